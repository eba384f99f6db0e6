#include "tests/support/TestCase.h"

#include <QRegularExpression>
#include <QWidget>

void TestCase::init()
{
    // The offscreen platform says so of every window that is shown, and nothing in the code does
    // it.
    QTest::failOnWarning(QRegularExpression(QStringLiteral("^(?!This plugin does not support )")));
}

void TestCase::cleanup()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows) {
        const QString text =
            QStringLiteral("left-over window: %1 \"%2\"")
                .arg(QString::fromLatin1(window->metaObject()->className()), window->windowTitle());
        QTest::qFail(qPrintable(text), __FILE__, __LINE__);
    }
}
