#include "benchmarks/support/Results.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSysInfo>
#include <QThread>

#include <algorithm>
#include <cstdio>

namespace bench {

namespace {

QString processorName()
{
    QFile file(QStringLiteral("/proc/cpuinfo"));
    if (!file.open(QIODevice::ReadOnly))
        return QSysInfo::currentCpuArchitecture();
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray& line : lines) {
        if (line.startsWith("model name"))
            return QString::fromLatin1(line.mid(line.indexOf(':') + 1).trimmed());
    }
    return QSysInfo::currentCpuArchitecture();
}

} // namespace

void Results::add(const Result& result)
{
    const char* verdict = "misses the bar";
    if (result.value <= result.aim)
        verdict = "reaches the aim";
    else if (result.value <= result.bar)
        verdict = "reaches the bar";
    std::printf("%-32s %10.4g %-2s  bar %-7.4g aim %-7.4g  %-16s %s\n", qPrintable(result.name),
                result.value, qPrintable(result.unit), result.bar, result.aim, verdict,
                qPrintable(result.detail));
    std::fflush(stdout);
    m_results.push_back(result);
}

bool Results::write(const QString& path) const
{
    QJsonArray figures;
    for (const Result& result : m_results) {
        figures.append(QJsonObject{{QStringLiteral("name"), result.name},
                                   {QStringLiteral("value"), result.value},
                                   {QStringLiteral("unit"), result.unit},
                                   {QStringLiteral("bar"), result.bar},
                                   {QStringLiteral("aim"), result.aim},
                                   {QStringLiteral("detail"), result.detail}});
    }
    const QJsonObject document{
        {QStringLiteral("machine"), processorName()},
        {QStringLiteral("cores"), QThread::idealThreadCount()},
        {QStringLiteral("system"), QSysInfo::prettyProductName()},
        {QStringLiteral("qt"), QString::fromLatin1(qVersion())},
        {QStringLiteral("date"), QDateTime::currentDateTimeUtc().toString(Qt::ISODate)},
        {QStringLiteral("results"), figures}};
    QFile file(path);
    const QByteArray bytes = QJsonDocument(document).toJson();
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush();
}

bool Results::allReached() const
{
    return std::all_of(m_results.begin(), m_results.end(),
                       [](const Result& result) { return result.value <= result.bar; });
}

} // namespace bench
