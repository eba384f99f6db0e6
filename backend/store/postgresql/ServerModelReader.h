#pragma once

#include "backend/store/ModelEditor.h"
#include "backend/store/UserModel.h"

class QSqlQuery;

namespace backend {

/// Follows a model with the rows that the server's read_model() returns: all of it, or what is
/// other than at the version that was asked for. One thread; one object per reading.
class ServerModelReader
{
public:
    explicit ServerModelReader(UserModel& model) : m_model(model) {}

    /// The columns that add() reads, in their order.
    static QString columns();
    void add(const QSqlQuery& row);
    /// Puts what was read into the model, and tells what is new in it.
    ModelChanges finish();

private:
    void readOwn(const ModelAccount& account);
    void readReceived(const ModelAccount& account, bool isCurrent);

    UserModel& m_model;
    /// The model that is read from scratch.
    UserModel m_fresh;
    ModelChanges m_changes;
    QVector<ModelSubUser> m_subUsers;
};

} // namespace backend
