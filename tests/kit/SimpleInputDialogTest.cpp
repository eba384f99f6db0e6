#include "kit/dialogs/SimpleInputDialog.h"

#include "kit/events/EventIds.h"
#include "kit/keyboard/SoftKeyboardLineEdit.h"
#include "kit/keyboard/SoftKeyboardPopup.h"
#include "kit/resources/UiResource.h"
#include "kit/widgets/SimpleTextWidget.h"
#include "tests/kit/EventRecorder.h"
#include "tests/support/TestCase.h"

#include <QClipboard>
#include <QPushButton>
#include <QTimer>

#include <functional>
#include <memory>

using namespace KZ;

class SimpleInputDialogTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void acceptHandsTheTextOverAfterClosing();
    void enterAccepts();
    void cancellingCallsNothing_data();
    void cancellingCallsNothing();
    void aPasswordMustNotBeEmpty();
    void anEmptyTextIsFineInTheOpenForm();
    void theCallbackRunsOnlyOnce();
    void itOpensEmptyAgain();
    void noEventLeavesTheDialog();
    void controlCharactersAreRefused();
    void theLengthIsLimited();
    void theEditorHasNameAndFocus();
    void anUnknownIconIsReplaced();
    void theParentMayDieMeanwhile();
    void theCallbackMayDestroyTheParent();
    void theScreenKeyboardAccepts();
    void nothingIsClipped_data();
    void nothingIsClipped();

private:
    CSimpleInputDialog* makeDialog();
    int run(CSimpleInputDialog* dialog, std::function<void()> meanwhile);
    QLineEdit* edit()
    {
        return m_dialog->findChild<QLineEdit*>(QStringLiteral("halden_input_edit"));
    }
    QPushButton* ok()
    {
        return m_dialog->findChild<QPushButton*>(QStringLiteral("halden_input_ok"));
    }
    QPushButton* cancel()
    {
        return m_dialog->findChild<QPushButton*>(QStringLiteral("halden_input_cancel"));
    }
    QString message()
    {
        return m_dialog->findChild<CSimpleTextWidget*>(QStringLiteral("halden_input_message"))
            ->text();
    }

    std::unique_ptr<EventRecorder> m_window;
    QPointer<CSimpleInputDialog> m_dialog;
    QStringList m_given;
    bool m_visibleInCallback = false;
};

void SimpleInputDialogTest::init()
{
    TestCase::init();
    m_window = std::make_unique<EventRecorder>();
    m_window->resize(600, 400);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_dialog = makeDialog();
}

void SimpleInputDialogTest::cleanup()
{
    m_window.reset();
    m_given.clear();
    m_visibleInCallback = false;
    CUiResource::setTheme(CUiResource::Theme::Light);
    TestCase::cleanup();
}

CSimpleInputDialog* SimpleInputDialogTest::makeDialog()
{
    auto* const dialog = new CSimpleInputDialog(QStringLiteral("输入授权密码"),
                                                QStringLiteral("Tarnwell.png"), m_window.get());
    dialog->setEchoMode(QLineEdit::Password);
    dialog->getInput([this, dialog](QString text) {
        m_visibleInCallback = dialog->isVisible();
        m_given += text;
    });
    return dialog;
}

/// Runs the dialog and calls `meanwhile` once it is shown.
int SimpleInputDialogTest::run(CSimpleInputDialog* dialog, std::function<void()> meanwhile)
{
    QTimer::singleShot(0, this, [guard = QPointer(dialog), meanwhile] {
        if (QTest::qWaitForWindowActive(guard))
            meanwhile();
        if (QTest::currentTestFailed() && guard)
            guard->reject();
    });
    return dialog->exec();
}

void SimpleInputDialogTest::acceptHandsTheTextOverAfterClosing()
{
    const int result = run(m_dialog, [this] {
        QVERIFY(m_dialog->isModal());
        QTest::keyClicks(edit(), QStringLiteral(" p&ss wort "));
        QTest::mouseClick(ok(), Qt::LeftButton);
    });
    QCOMPARE(result, int(QDialog::Accepted));
    QCOMPARE(m_given, QStringList(QStringLiteral(" p&ss wort ")));
    QVERIFY(!m_visibleInCallback);
    QVERIFY(edit()->text().isEmpty());
}

void SimpleInputDialogTest::enterAccepts()
{
    const int result = run(m_dialog, [this] {
        QTest::keyClicks(edit(), QStringLiteral("geheim"));
        QTest::keyClick(edit(), Qt::Key_Return);
    });
    QCOMPARE(result, int(QDialog::Accepted));
    QCOMPARE(m_given, QStringList(QStringLiteral("geheim")));
}

void SimpleInputDialogTest::cancellingCallsNothing_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("button") << 0;
    QTest::newRow("Esc") << 1;
    QTest::newRow("close") << 2;
    QTest::newRow("close button") << 3;
}

void SimpleInputDialogTest::cancellingCallsNothing()
{
    QFETCH(int, way);
    const int result = run(m_dialog, [this, way] {
        QTest::keyClicks(edit(), QStringLiteral("geheim"));
        if (way == 0)
            QTest::mouseClick(cancel(), Qt::LeftButton);
        else if (way == 1)
            QTest::keyClick(edit(), Qt::Key_Escape);
        else if (way == 2)
            m_dialog->close();
        else
            m_dialog->handleEvent(EVENT_BUTTON_CLICKED, CBaseDialog::ID_BUTTON_CLOSE, 0, QString(),
                                  nullptr);
    });
    QCOMPARE(result, int(QDialog::Rejected));
    QVERIFY(m_given.isEmpty());
}

void SimpleInputDialogTest::aPasswordMustNotBeEmpty()
{
    run(m_dialog, [this] {
        QVERIFY(!ok()->isEnabled());
        QTest::keyClick(edit(), Qt::Key_Return);
        QTRY_VERIFY(!message().isEmpty());
        QVERIFY(m_dialog->isVisible());
        QTest::keyClicks(edit(), QStringLiteral("   "));
        QVERIFY(!ok()->isEnabled());
        QVERIFY(!message().isEmpty());
        QTest::keyClick(edit(), Qt::Key_Return);
        QCoreApplication::processEvents();
        QVERIFY(m_dialog->isVisible());
        QTest::keyClicks(edit(), QStringLiteral("x"));
        QVERIFY(ok()->isEnabled());
        QVERIFY(message().isEmpty());
        m_dialog->reject();
    });
    QVERIFY(m_given.isEmpty());
}

void SimpleInputDialogTest::anEmptyTextIsFineInTheOpenForm()
{
    m_dialog->setEchoMode(QLineEdit::Normal);
    run(m_dialog, [this] {
        QVERIFY(ok()->isEnabled());
        QTest::keyClick(edit(), Qt::Key_Enter);
    });
    QCOMPARE(m_given, QStringList(QString()));
}

void SimpleInputDialogTest::theCallbackRunsOnlyOnce()
{
    run(m_dialog, [this] {
        QTest::keyClicks(edit(), QStringLiteral("a"));
        QTest::keyClick(edit(), Qt::Key_Return);
        QTest::keyClick(edit(), Qt::Key_Return);
        QTest::mouseClick(ok(), Qt::LeftButton);
    });
    QCoreApplication::processEvents();
    QCOMPARE(m_given.size(), 1);
}

void SimpleInputDialogTest::itOpensEmptyAgain()
{
    run(m_dialog, [this] {
        QTest::keyClicks(edit(), QStringLiteral("abc"));
        m_dialog->reject();
    });
    run(m_dialog, [this] {
        QVERIFY(edit()->text().isEmpty());
        QTRY_VERIFY(edit()->hasFocus());
        m_dialog->reject();
    });
}

void SimpleInputDialogTest::noEventLeavesTheDialog()
{
    run(m_dialog, [this] {
        QTest::keyClicks(edit(), QStringLiteral("abc"));
        cancel()->setFocus();
        edit()->setFocus();
        QTest::keyClick(edit(), Qt::Key_Return);
    });
    QCOMPARE(m_given.size(), 1);
    QVERIFY(m_window->records.isEmpty());
}

void SimpleInputDialogTest::controlCharactersAreRefused()
{
    run(m_dialog, [this] {
        QTest::keyClicks(edit(), QStringLiteral("ab"));
        QGuiApplication::clipboard()->setText(QStringLiteral("c") + QChar(u'\0') +
                                              QStringLiteral("d"));
        edit()->paste();
        QCOMPARE(edit()->text(), QStringLiteral("ab"));
        QVERIFY(!message().isEmpty());
        QTest::sendKeyEvent(QTest::Click, edit(), Qt::Key_unknown, QStringLiteral("中文😀"),
                            Qt::NoModifier);
        QVERIFY(message().isEmpty());
        QTest::keyClick(edit(), Qt::Key_Return);
    });
    QCOMPARE(m_given, QStringList(QStringLiteral("ab中文😀")));
}

void SimpleInputDialogTest::theLengthIsLimited()
{
    run(m_dialog, [this] {
        QGuiApplication::clipboard()->setText(QString(1'000'000, QLatin1Char('x')));
        edit()->paste();
        QCOMPARE(edit()->text().size(), qsizetype(CLineEdit::MAX_TEXT_LENGTH));
        QTest::keyClicks(edit(), QStringLiteral("y"));
        QCOMPARE(edit()->text().size(), qsizetype(CLineEdit::MAX_TEXT_LENGTH));
        QVERIFY(message().contains(QString::number(CLineEdit::MAX_TEXT_LENGTH)));
        m_dialog->reject();
    });
    QGuiApplication::clipboard()->clear();
}

void SimpleInputDialogTest::theEditorHasNameAndFocus()
{
    QCOMPARE(m_dialog->windowTitle(), QStringLiteral("输入授权密码"));
    run(m_dialog, [this] {
        QCOMPARE(edit()->accessibleName(), QStringLiteral("输入授权密码"));
        QTRY_VERIFY(edit()->hasFocus());
        QVERIFY(!ok()->isDefault() && !cancel()->isDefault());
        m_dialog->reject();
    });
}

void SimpleInputDialogTest::anUnknownIconIsReplaced()
{
    const CSimpleInputDialog unknown(QStringLiteral("名称"), QStringLiteral("nowhere.png"),
                                     m_window.get());
    QVERIFY(!unknown.windowIcon().isNull());
    QVERIFY(unknown.windowIcon().pixmap(16).toImage() !=
            CUiResource::getIcon(QStringLiteral("gw_img_kit_unknown")).pixmap(16).toImage());
}

void SimpleInputDialogTest::theParentMayDieMeanwhile()
{
    run(m_dialog, [this] {
        QTest::keyClicks(edit(), QStringLiteral("abc"));
        m_window.reset();
    });
    QVERIFY(!m_dialog);
    QVERIFY(m_given.isEmpty());
}

void SimpleInputDialogTest::theCallbackMayDestroyTheParent()
{
    m_dialog->getInput([this](QString text) {
        m_window.reset();
        m_given += text;
    });
    run(m_dialog, [this] {
        QTest::keyClicks(edit(), QStringLiteral("abc"));
        QTest::keyClick(edit(), Qt::Key_Return);
    });
    QVERIFY(!m_dialog);
    QCOMPARE(m_given, QStringList(QStringLiteral("abc")));
}

void SimpleInputDialogTest::theScreenKeyboardAccepts()
{
    run(m_dialog, [this] {
        QTest::keyClick(edit(), Qt::Key_F4);
        auto* const softEdit = qobject_cast<CSoftKeyboardLineEdit*>(edit());
        QVERIFY(softEdit && softEdit->keyboard());
        QTest::keyClick(edit(), Qt::Key_Escape);
        QVERIFY(m_dialog->isVisible());
        QTest::keyClick(edit(), Qt::Key_F4);
        const QString characters = softEdit->keyboard()->characters();
        auto* const first = softEdit->keyboard()->findChildren<QPushButton*>().constFirst();
        QTest::mouseClick(first, Qt::LeftButton);
        QCOMPARE(edit()->text(), QString(characters.front()));
        QTest::mouseClick(
            softEdit->keyboard()->findChild<QPushButton*>(QStringLiteral("kz_key_enter")),
            Qt::LeftButton);
    });
    QCOMPARE(m_given.size(), 1);
}

void SimpleInputDialogTest::nothingIsClipped_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void SimpleInputDialogTest::nothingIsClipped()
{
    QFETCH(bool, dark);
    run(m_dialog, [this, dark] {
        CUiResource::setTheme(dark ? CUiResource::Theme::Dark : CUiResource::Theme::Light);
        QTest::keyClick(edit(), Qt::Key_Return);
        QTRY_VERIFY(!message().isEmpty());
        const QList<QWidget*> parts = m_dialog->findChildren<QWidget*>();
        for (const QWidget* const part : parts) {
            // Qt sizes the buttons inside its line edit by the line edit alone.
            if (!part->isVisible() || part->isWindow() || part->parentWidget() == edit())
                continue;
            const QByteArray name = part->metaObject()->className();
            QVERIFY2(part->parentWidget()->rect().contains(part->geometry()), name.constData());
            QVERIFY2(part->width() >= part->minimumSizeHint().width() &&
                         part->height() >= part->minimumSizeHint().height(),
                     name.constData());
        }
        m_dialog->reject();
    });
}

int main(int argc, char** argv)
{
    return runTest<SimpleInputDialogTest>(argc, argv);
}

#include "SimpleInputDialogTest.moc"
