#pragma once

#include "authsetting/authorize/ExpiryHints.h"
#include "authsetting/services/Account.h"
#include "authsetting/services/AuthDetail.h"
#include "kit/table/OddEvenRowTable.h"

#include <QDate>
#include <QString>

namespace GW {

class CAccountTextCache;

/// The accounts of the batch tab, one per row, with a tick that selects a row for the next grant.
/// A granted account shows a tick that is locked and never counts as selected. Rows that are
/// selected show the grant in the making ("pending") in place of their own state.
class CBatchAccountsTable : public KZ::COddEvenRowTable
{
public:
    enum Column {
        SelectColumn,
        PlatformColumn,
        BrokerColumn,
        AccountColumn,
        StateColumn,
        GranteeColumn,
        StartColumn,
        EndColumn,
        OperationColumn,
        ColumnCount
    };

    explicit CBatchAccountsTable(QWidget* parent);

    void clearAccounts();
    /// Appends the row of an account and of its grant, which may be null; returns its identifier.
    int addAccount(const CAccount& account, const CAuthDetail* grant, CAccountTextCache& texts);

    /// Whether the user has ticked the row for the next grant.
    bool isSelected(int row) const;
    bool hasSelectedRow() const;

    /// Shows in the row what a grant with these values would make of it.
    void showPending(int row, const QDate& start, const QDate& end, const QString& grantee);
    /// Shows the row as not granted again.
    void resetPending(int row);

private:
    void buildColumns();
    KZ::CColumnWidgetKind operationWidgets();

    CExpiryHints m_hints;
};

} // namespace GW
