#pragma once

#include <QElapsedTimer>
#include <QString>

namespace admin {

/// A bar on standard error that shows how far something is; shows nothing when standard error is no
/// terminal. Goes away with the object.
class ProgressBar
{
public:
    explicit ProgressBar(const QString& title);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// Draws at most ten times a second.
    void show(qint64 done, qint64 total);
    /// Makes room for other lines on standard error; the bar comes back when it next has to move.
    void hide();
    /// The text of a bar that is `width` columns wide.
    static QString text(const QString& title, qint64 done, qint64 total, int width);

private:
    QString m_title;
    bool m_isTerminal = false;
    bool m_isShown = false;
    QElapsedTimer m_sinceDrawn;
};

} // namespace admin
