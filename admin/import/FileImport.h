#pragma once

#include "admin/import/RecordAdder.h"
#include "backend/store/StoreAdmin.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace admin {

/// Takes the records of a CSV file into a store, in one transaction.
class FileImport
{
public:
    /// Whether the good records are taken when others are refused.
    enum class Mode { TakeGood, AllOrNone };
    /// Told how far the work is; the unit is arbitrary.
    using OnProgress = std::function<void(qint64 done, qint64 total)>;

    FileImport(RecordKind kind, Mode mode) : m_adder(kind), m_mode(mode) {}

    /// Why nothing at all was taken, in Chinese: an unreadable file, a wrong header, a store that
    /// failed; empty when the file was gone through. A file with secrets has to be private.
    QString run(const QString& path, backend::StoreAdmin& store, const OnProgress& onProgress = {});

    /// How many records were taken.
    int taken() const { return m_taken; }
    /// Each refused record's line and reason, ready to show.
    const QStringList& refused() const { return m_refused; }

private:
    RecordAdder m_adder;
    Mode m_mode;
    int m_taken = 0;
    QStringList m_refused;
};

} // namespace admin
