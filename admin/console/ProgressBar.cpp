#include "admin/console/ProgressBar.h"

#include <algorithm>
#include <cstdio>
#include <sys/ioctl.h>
#include <unistd.h>

namespace admin {

namespace {

constexpr qint64 redrawIntervalMs = 100;
constexpr int standardWidth = 80;
constexpr int widestBar = 60;

int terminalWidth()
{
    winsize size = {};
    const bool isKnown = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : standardWidth;
}

// Chinese characters take two columns.
int columns(const QString& text)
{
    return static_cast<int>(
        std::count_if(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() >= 0x1100; }) +
        text.size());
}

} // namespace

ProgressBar::ProgressBar(const QString& title)
    : m_title(title), m_isTerminal(::isatty(STDERR_FILENO) == 1)
{
}

ProgressBar::~ProgressBar()
{
    hide();
}

void ProgressBar::hide()
{
    if (!m_isShown)
        return;
    // Erases the line.
    std::fputs("\r\033[K", stderr);
    m_isShown = false;
}

void ProgressBar::show(qint64 done, qint64 total)
{
    const bool isFresh = m_sinceDrawn.isValid() && m_sinceDrawn.elapsed() < redrawIntervalMs;
    if (!m_isTerminal || (isFresh && done < total))
        return;
    m_isShown = true;
    m_sinceDrawn.start();
    const QByteArray line = text(m_title, done, total, terminalWidth() - 1).toUtf8();
    std::fputs("\r\033[K", stderr);
    std::fputs(line.constData(), stderr);
    std::fflush(stderr);
}

QString ProgressBar::text(const QString& title, qint64 done, qint64 total, int width)
{
    const double share =
        total <= 0 ? 1.0
                   : std::clamp(static_cast<double>(done) / static_cast<double>(total), 0., 1.);
    const QString percent = QStringLiteral("%1%").arg(static_cast<int>(share * 100.0), 4);
    // Two brackets and a blank.
    const int room =
        std::clamp(width - columns(title) - 3 - static_cast<int>(percent.size()), 0, widestBar);
    const int full = static_cast<int>(share * room);
    return title + QLatin1String(" [") + QString(full, QLatin1Char('#')) +
           QString(room - full, QLatin1Char('-')) + QLatin1Char(']') + percent;
}

} // namespace admin
