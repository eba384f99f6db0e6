#pragma once

#include <QApplication>
#include <QObject>
#include <QTest>

/// Base of every test class. Each test function fails on any Qt warning (announce an expected one
/// with QTest::ignoreMessage) and on any top-level window left behind when it ends.
/// A class with an init() or cleanup() of its own calls these.
class TestCase : public QObject
{
    Q_OBJECT

protected Q_SLOTS:
    void init();
    void cleanup();
};

/// Runs the test class `Test` in an application; the main() of every widget test.
template <class Test>
int runTest(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    Test test;
    return QTest::qExec(&test, argc, argv);
}
