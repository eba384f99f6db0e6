#include "host/client/FirstPlace.h"

#include "host/client/ClientWindow.h"
#include "host/demo/DemoData.h"
#include "tests/host/DemoFixture.h"
#include "tests/support/TestCase.h"

#include <QScreen>
#include <QWindow>

namespace {

QRect availableArea()
{
    return QGuiApplication::primaryScreen()->availableGeometry();
}

} // namespace

/// On a screen of 910 by 512 with a window manager that gives windows a frame.
class FirstPlaceTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theClientOpensInsideTheAvailableArea()
    {
        const DemoFixture demo;
        const auto window = demo.clientWindow(host::DemoData::mainUser());
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        QTRY_VERIFY2(availableArea().contains(window->windowHandle()->frameGeometry()),
                     "the window reaches beyond the screen");
        QVERIFY(window->height() > availableArea().height() / 2);
    }

    void aWindowThatFitsKeepsItsSize()
    {
        QWidget window;
        window.resize(300, 200);
        new host::FirstPlace(&window);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTRY_VERIFY(!window.findChild<host::FirstPlace*>());
        QCOMPARE(window.size(), QSize(300, 200));
        QVERIFY(availableArea().contains(window.windowHandle()->frameGeometry()));
    }

    void aWindowOutsideIsMovedIn()
    {
        QWidget window;
        window.resize(300, 200);
        window.move(800, 450);
        new host::FirstPlace(&window);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTRY_VERIFY(availableArea().contains(window.windowHandle()->frameGeometry()));
        QCOMPARE(window.size(), QSize(300, 200));
    }
};

int main(int argc, char** argv)
{
    return runTest<FirstPlaceTest>(argc, argv);
}

#include "FirstPlaceTest.moc"
