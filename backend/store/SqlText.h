#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace backend {

/// The statement called `name` in the folder sql. A name that is not there is a mistake of the
/// program and ends it. Any thread.
const QString& sqlText(const QByteArray& name);

/// The statements of sql/migration_<number><suffix>.sql in order; empty when there is no such file.
QStringList migrationScript(int number, const QString& suffix);

} // namespace backend
