#pragma once

#include <QProcess>
#include <QStringList>

/// Runs the program that stands for a screen reader on this program. While it works the event loop
/// runs, in which this program answers it.
class Walker
{
public:
    Walker() = default;
    ~Walker();
    Walker(const Walker&) = delete;
    Walker& operator=(const Walker&) = delete;

    /// What is shown, one object per line, its depth as indentation; empty when it did not come to
    /// its end.
    static QStringList heard();
    /// Presses or ticks a control by its name; false when there is none that can be pressed.
    static bool press(const QString& name);

    /// Begins to write down what is said by itself; true once nothing is missed any more.
    bool listen();
    /// What was said since listen(), once `last` has been said or nothing more comes.
    QStringList said(const QString& last);

private:
    bool await(const QString& line);

    QProcess m_listener;
    QStringList m_lines;
};
