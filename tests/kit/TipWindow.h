#pragma once

#include "kit/resources/UiResource.h"
#include "kit/tips/MessageTip.h"
#include "tests/kit/EventRecorder.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>

#include <memory>

/// A shown window with one editor to show tips at; base of the tests of tips, which open and close
/// it around every test function.
class TipWindow
{
protected:
    void open()
    {
        // A pointer that happens to rest where a tip comes up would keep it open.
        QCursor::setPos(0, 0);
        m_window = std::make_unique<EventRecorder>();
        m_window->resize(500, 300);
        m_window->move(100, 100);
        m_anchor = new QLineEdit(m_window.get());
        m_anchor->setGeometry(50, 60, 160, 28);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        m_anchor->setFocus();
    }

    void close()
    {
        KZ::CMessageTip::closeAll();
        m_window.reset();
        KZ::CUiResource::setTheme(KZ::CUiResource::Theme::Light);
    }

    void show(const QString& text, int kind = 3, int duration = 300)
    {
        KZ::CMessageTip::showTip(m_anchor, 0x41, text, kind, 2, duration);
    }

    /// The one tip that is shown, null when there is none or more than one.
    static KZ::CMessageTip* only()
    {
        const QList<KZ::CMessageTip*> tips = KZ::CMessageTip::visibleTips();
        return tips.size() == 1 ? tips.constFirst() : nullptr;
    }

    static QPlainTextEdit* body(const KZ::CMessageTip* tip)
    {
        return tip->findChild<QPlainTextEdit*>();
    }

    std::unique_ptr<EventRecorder> m_window;
    QLineEdit* m_anchor = nullptr;
};
