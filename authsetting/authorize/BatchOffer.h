#pragma once

#include "authsetting/services/AuthLimit.h"

#include <QString>
#include <QStringList>

namespace GW {

/// A grant of several accounts as the batch tab shows it to the user. A value.
struct CBatchOffer
{
    QString grantee;
    CAuthLimit days;
    /// The selected accounts, in the order of the rows.
    QStringList keys;

    bool operator==(const CBatchOffer& other) const;
};

/// Whether each of these is still one of the user's accounts and can be granted.
bool areGrantable(const QStringList& accountKeys);

} // namespace GW
