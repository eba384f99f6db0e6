#pragma once

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QStringList>
#include <QTest>
#include <QTimer>

#include <functional>
#include <utility>

/// Answers the modal dialogs that a page opens, one after the other, from inside their own event
/// loops. Declare what to do before the page is called; whatever is left over fails the test.
class ModalDriver : public QObject
{
public:
    /// `host` is the modal window that opens the dialogs, if there is one.
    explicit ModalDriver(QWidget* host = nullptr) : m_host(host)
    {
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        m_timer.setInterval(5);
        connect(&m_timer, &QTimer::timeout, this, &ModalDriver::look);
    }
    ~ModalDriver() override
    {
        if (!m_steps.isEmpty())
            QTest::qFail("a dialog that the test expected was never opened", __FILE__, __LINE__);
    }

    /// Answers a file dialog with `path`; an empty one cancels it.
    void answerFile(const QString& path)
    {
        expect([this, path](QWidget* window) {
            auto* dialog = qobject_cast<QFileDialog*>(window);
            QVERIFY2(dialog, "expected a file dialog");
            titles.append(dialog->windowTitle());
            filters.append(dialog->nameFilters().join(u';'));
            parents.append(dialog->parentWidget());
            auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
            proposals.append(name->text());
            if (path.isEmpty()) {
                dialog->reject();
                return;
            }
            name->setText(path);
            static_cast<QDialog*>(dialog)->accept();
        });
    }

    /// Types `password` into the password dialog and accepts it.
    void answerPassword(const QString& password)
    {
        expect([this, password](QWidget* window) {
            auto* edit = window->findChild<QLineEdit*>(QStringLiteral("halden_input_edit"));
            QVERIFY2(edit, "expected the password dialog");
            titles.append(window->windowTitle());
            parents.append(window->parentWidget());
            echoModes.append(edit->echoMode());
            edit->setText(password);
            window->findChild<QPushButton*>(QStringLiteral("halden_input_ok"))->click();
        });
    }

    void cancelPassword()
    {
        expect([this](QWidget* window) {
            auto* cancel = window->findChild<QPushButton*>(QStringLiteral("halden_input_cancel"));
            QVERIFY2(cancel, "expected the password dialog");
            titles.append(window->windowTitle());
            cancel->click();
        });
    }

    /// Does anything else in the event loop of the next dialog.
    void expect(std::function<void(QWidget*)> step)
    {
        m_steps.append(std::move(step));
        m_timer.start();
    }

    QStringList titles;
    QStringList filters;
    QStringList proposals;
    QVector<QWidget*> parents;
    QVector<QLineEdit::EchoMode> echoModes;

private:
    void look()
    {
        QWidget* window = QApplication::activeModalWidget();
        if (!window || window == m_host || window == m_answered || !window->isVisible() ||
            m_steps.isEmpty())
            return;
        m_answered = window;
        const auto step = m_steps.takeFirst();
        if (m_steps.isEmpty())
            m_timer.stop();
        step(window);
    }

    QTimer m_timer;
    QVector<std::function<void(QWidget*)>> m_steps;
    QPointer<QWidget> m_host;
    QPointer<QWidget> m_answered;
};
