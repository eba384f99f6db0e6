#include "admin/import/FileImport.h"

#include "admin/console/PrivateFile.h"
#include "admin/csv/CsvReader.h"

namespace admin {

namespace {

constexpr qint64 maxFileSize = 256LL * 1024 * 1024;

} // namespace

QString FileImport::run(const QString& path, backend::StoreAdmin& store, const Listener& listener)
{
    m_taken = 0;
    m_refused = 0;
    QString error;
    const std::optional<QByteArray> bytes = readFile(
        path, m_adder.holdsSecrets() ? Privacy::OwnerOnly : Privacy::Any, maxFileSize, &error);
    if (!bytes)
        return error;
    if (bytes->startsWith("\xff\xfe") || bytes->startsWith("\xfe\xff"))
        return QStringLiteral("文件 %1 是 UTF-16 编码，应为 UTF-8").arg(path);
    CsvReader reader(*bytes);
    CsvRecord record;
    if (!reader.next(&record))
        return QStringLiteral("文件 %1 是空的，第一行应为标题行").arg(path);
    CsvHeader header;
    error = header.read(record, m_adder.requiredColumns(), m_adder.optionalColumns());
    if (!error.isEmpty())
        return QStringLiteral("文件 %1：%2").arg(path, error);

    store.skipRefusedRecords();
    while (reader.next(&record)) {
        const QString problem = m_adder.add(header, record, store);
        if (store.hasFailed())
            return QStringLiteral("第 %1 行：%2；没有添加任何记录").arg(record.line).arg(problem);
        if (problem.isEmpty()) {
            ++m_taken;
        } else {
            ++m_refused;
            listener.onRefused(QStringLiteral("第 %1 行：%2").arg(record.line).arg(problem));
        }
        listener.onProgress(reader.position(), reader.size());
    }
    if (m_mode == Mode::AllOrNone && m_refused > 0) {
        m_taken = 0;
        return {};
    }
    if (!store.commit()) {
        m_taken = 0;
        return QStringLiteral("%1；没有添加任何记录").arg(store.error());
    }
    return {};
}

} // namespace admin
