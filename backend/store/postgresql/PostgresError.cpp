#include "backend/store/postgresql/PostgresError.h"

#include <QHash>

namespace backend {

bool PostgresError::isTransient() const
{
    // Serialization failure and deadlock.
    return m_sqlState == QStringLiteral("40001") || m_sqlState == QStringLiteral("40P01");
}

StoreFailure::Kind PostgresError::kindOf(const QString& sqlState)
{
    using Kind = StoreFailure::Kind;
    static const QHash<QString, Kind> exact{
        {QStringLiteral("28000"), Kind::Disabled},    {QStringLiteral("28P01"), Kind::WrongLogin},
        {QStringLiteral("3D000"), Kind::Missing},     {QStringLiteral("3F000"), Kind::NotPrepared},
        {QStringLiteral("42P01"), Kind::NotPrepared}, {QStringLiteral("42883"), Kind::NotPrepared},
        {QStringLiteral("42703"), Kind::NotPrepared}, {QStringLiteral("42501"), Kind::ReadOnly},
        {QStringLiteral("25006"), Kind::ReadOnly},    {QStringLiteral("40001"), Kind::Busy},
        {QStringLiteral("40P01"), Kind::Busy},        {QStringLiteral("55P03"), Kind::Busy},
        {QStringLiteral("57014"), Kind::Busy},        {QStringLiteral("53300"), Kind::Crowded},
        {QStringLiteral("53100"), Kind::Full},        {QStringLiteral("53200"), Kind::OutOfMemory}};
    // By the class of the code.
    static const QHash<QString, Kind> classes{{QStringLiteral("08"), Kind::Offline},
                                              {QStringLiteral("57"), Kind::Offline},
                                              {QStringLiteral("23"), Kind::Constraint},
                                              {QStringLiteral("58"), Kind::Io},
                                              {QStringLiteral("XX"), Kind::Damaged}};
    return exact.value(sqlState, classes.value(sqlState.left(2), Kind::Other));
}

} // namespace backend
