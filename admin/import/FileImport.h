#pragma once

#include "admin/import/RecordAdder.h"
#include "backend/store/StoreAdmin.h"

#include <QString>

#include <functional>

namespace admin {

/// Takes the records of a CSV file into a store, in one transaction.
class FileImport
{
public:
    /// Whether the good records are taken when others are refused.
    enum class Mode { TakeGood, AllOrNone };
    /// Who is told what happens.
    struct Listener
    {
        /// How far the work is; the unit is arbitrary.
        std::function<void(qint64 done, qint64 total)> onProgress;
        /// A refused record's line and reason, ready to show.
        std::function<void(const QString& line)> onRefused;
    };

    FileImport(RecordKind kind, Mode mode) : m_adder(kind), m_mode(mode) {}

    /// Why nothing at all was taken, in Chinese: an unreadable file, a wrong header, a store that
    /// failed; empty when the file was gone through. A file with secrets has to be private.
    QString run(const QString& path, backend::StoreAdmin& store, const Listener& listener);

    /// How many records were taken.
    int taken() const { return m_taken; }
    /// How many were refused.
    int refused() const { return m_refused; }

private:
    RecordAdder m_adder;
    Mode m_mode;
    int m_taken = 0;
    int m_refused = 0;
};

} // namespace admin
