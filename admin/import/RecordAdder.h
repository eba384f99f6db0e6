#pragma once

#include "admin/csv/CsvHeader.h"
#include "admin/import/RecordKind.h"
#include "authsetting/services/AccountInfo.h"
#include "backend/store/StoreAdmin.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace admin {

/// Adds the records of one kind of file to a store.
class RecordAdder
{
public:
    explicit RecordAdder(RecordKind kind) : m_kind(kind) {}

    /// The kind of that name ("users", "sub-users", …); nothing for another.
    static std::optional<RecordKind> kindOf(const QString& name);
    static QStringList kindNames();

    QStringList requiredColumns() const;
    QStringList optionalColumns() const;
    /// Whether such a file has passwords or other secrets in it.
    bool holdsSecrets() const;

    /// Adds one record; why it is refused, in Chinese, or empty.
    QString add(const CsvHeader& header, const CsvRecord& record, backend::StoreAdmin& store) const;

private:
    /// Reads fields and collects the first problem.
    class Fields;

    bool addUser(Fields& fields, backend::StoreAdmin& store) const;
    bool addAccount(Fields& fields, backend::StoreAdmin& store) const;
    bool addSubAccount(Fields& fields, backend::StoreAdmin& store) const;
    bool addPlatform(Fields& fields, backend::StoreAdmin& store) const;
    bool addBroker(Fields& fields, backend::StoreAdmin& store) const;

    RecordKind m_kind;
};

} // namespace admin
