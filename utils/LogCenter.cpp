#include "utils/LogCenter.h"

#include <QFile>

#include <log4cxx/basicconfigurator.h>
#include <log4cxx/consoleappender.h>
#include <log4cxx/fileappender.h>
#include <log4cxx/helpers/exception.h>
#include <log4cxx/logger.h>
#include <log4cxx/logmanager.h>
#include <log4cxx/patternlayout.h>

#include <atomic>
#include <mutex>

namespace utils {

namespace {

constexpr const char* debugLoggerName = "MBDbgFile";
constexpr const char* errorLoggerName = "MBErrFile";
constexpr int defaultFileLogLevel = 10;

std::atomic<int> fileLogLevel{defaultFileLogLevel};
std::once_flag defaultAppender;

log4cxx::LayoutPtr lineLayout()
{
    return std::make_shared<log4cxx::PatternLayout>(LOG4CXX_STR("%d %-5p %c %m%n"));
}

void replaceAppender(const log4cxx::AppenderPtr& appender)
{
    const auto root = log4cxx::Logger::getRootLogger();
    root->removeAllAppenders();
    root->addAppender(appender);
    root->setLevel(log4cxx::Level::getInfo());
}

// log4cxx complains on its own about the first line when nobody has configured it.
void ensureAppender()
{
    std::call_once(defaultAppender, [] {
        if (log4cxx::Logger::getRootLogger()->getAllAppenders().empty()) {
            replaceAppender(std::make_shared<log4cxx::ConsoleAppender>(
                lineLayout(), log4cxx::ConsoleAppender::getSystemErr()));
        }
    });
}

log4cxx::LoggerPtr loggerNamed(const char* name)
{
    ensureAppender();
    return log4cxx::Logger::getLogger(name);
}

} // namespace

bool CLogCenter::configure(const QString& path)
{
    ensureAppender();
    if (path.isEmpty())
        return false;
    // FileAppender reports an unwritable path only on standard error, so it is tried here first.
    QFile probe(path);
    if (!probe.open(QIODevice::WriteOnly | QIODevice::Append,
                    QFileDevice::ReadOwner | QFileDevice::WriteOwner))
        return false;
    probe.close();
    try {
        replaceAppender(std::make_shared<log4cxx::FileAppender>(
            lineLayout(), QFile::encodeName(path).toStdString(), true));
    } catch (const log4cxx::helpers::Exception&) {
        return false;
    }
    return true;
}

bool CLogCenter::fileLogEnabled(int level)
{
    return level <= fileLogLevel.load();
}

void CLogCenter::setFileLogLevel(int level)
{
    fileLogLevel.store(level);
}

bool CLogCenter::debugEnabled(const char* name)
{
    return loggerNamed(name)->isDebugEnabled();
}

void CLogCenter::setDebugEnabled(const char* name, bool enabled)
{
    loggerNamed(name)->setLevel(enabled ? log4cxx::Level::getDebug() : log4cxx::Level::getInfo());
}

void CLogCenter::error(const QString& text)
{
    LOG4CXX_ERROR(loggerNamed(errorLoggerName), text.toStdString());
}

void CLogCenter::warning(const QString& text)
{
    LOG4CXX_WARN(loggerNamed(errorLoggerName), text.toStdString());
}

} // namespace utils

void mbDbgLogNew(int level, const QString& text)
{
    if (!utils::CLogCenter::fileLogEnabled(level))
        return;
    LOG4CXX_DEBUG(utils::loggerNamed(utils::debugLoggerName), text.toStdString());
}
