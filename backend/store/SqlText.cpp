#include "backend/store/SqlText.h"

#include <QFile>
#include <QHash>
#include <QResource>

// Resources of a static library are only there once asked for, outside of any namespace.
static void initStoreSql()
{
    Q_INIT_RESOURCE(store_sql);
}

namespace {

QString resourceText(const QString& fileName)
{
    initStoreSql();
    QFile file(QStringLiteral(":/authsetting/store/") + fileName);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll());
}

QHash<QByteArray, QString> readStatements()
{
    const QString marker = QStringLiteral("-- name: ");
    QHash<QByteArray, QString> statements;
    for (const QString& file :
         {QStringLiteral("schema.sql"), QStringLiteral("users.sql"), QStringLiteral("accounts.sql"),
          QStringLiteral("grants.sql"), QStringLiteral("audit.sql")}) {
        const QStringList parts = resourceText(file).split(marker, Qt::SkipEmptyParts);
        for (const QString& part : parts) {
            const qsizetype end = part.indexOf(u'\n');
            statements.insert(part.left(end).trimmed().toLatin1(), part.mid(end).trimmed());
        }
    }
    return statements;
}

} // namespace

namespace backend {

const QString& sqlText(const QByteArray& name)
{
    static const QHash<QByteArray, QString> statements = readStatements();
    const auto found = statements.constFind(name);
    if (found == statements.constEnd())
        qFatal("No SQL statement is called %s", name.constData());
    return *found;
}

QStringList migrationScript(int number, const QString& suffix)
{
    const QString name =
        QStringLiteral("migration_%1%2.sql").arg(number, 3, 10, QLatin1Char('0')).arg(suffix);
    QStringList statements;
    const QStringList parts =
        resourceText(name).split(QStringLiteral("\n--;\n"), Qt::SkipEmptyParts);
    for (const QString& part : parts)
        statements.append(part.trimmed());
    return statements;
}

} // namespace backend
