#pragma once

#include "backend/store/UserModel.h"

#include <QDate>

namespace backend {

class Database;
class Statement;

/// Reads what one user may know from the store; call it inside a transaction, so that all of it is
/// of one moment. Failures are thrown as StoreError.
class ModelReader
{
public:
    explicit ModelReader(Database& database) : m_database(database) {}

    /// Version and state of the user alone; false when there is no such user any more.
    bool readState(qint64 userId, qint64* version, bool* enabled);
    UserModel read(qint64 userId, const QString& userName, const QDate& today);

private:
    ModelAccount account(Statement& row) const;
    CurrentGrant grant(Statement& row) const;
    void readRelations(UserModel& model);

    Database& m_database;
};

} // namespace backend
