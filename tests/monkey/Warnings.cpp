#include "tests/monkey/Warnings.h"

#include <QMutex>
#include <QStringList>

#include <cstdio>
#include <utility>

namespace monkey {

namespace {

QMutex s_mutex;
QString s_first;

void onMessage(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    // The offscreen platform says so of every window that is shown, and nothing in the code does
    // it.
    if (type == QtDebugMsg || type == QtInfoMsg ||
        text.startsWith(QStringLiteral("This plugin does not support ")))
        return;
    // Nobody comes to ask after it.
    if (type == QtFatalMsg)
        std::fputs(qPrintable(text + u'\n'), stderr);
    const QMutexLocker locker(&s_mutex);
    if (s_first.isEmpty())
        s_first = text;
}

} // namespace

void Warnings::collect()
{
    qInstallMessageHandler(onMessage);
}

QString Warnings::take()
{
    const QMutexLocker locker(&s_mutex);
    return std::exchange(s_first, QString());
}

} // namespace monkey
