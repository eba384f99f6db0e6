#pragma once

#include "authsetting/authorize/ExpiryHints.h"
#include "authsetting/subusers/PendingGrant.h"
#include "kit/table/OddEvenRowTable.h"

#include <QHash>
#include <QPointer>
#include <QString>
#include <QVector>

#include <boost/shared_ptr.hpp>

namespace KZ {
class CSmallNormalButton;
}

namespace GW {

class CAccount;
class CAuthDetail;

/// The user's own accounts in the table of one restricted user, each with a tick for a grant to be
/// made, its state, and a button that cancels its grant. GUI thread only.
class CRestrictedUserTable : public KZ::COddEvenRowTable
{
    Q_OBJECT

public:
    /// Added to a row's identifier it makes the identifier of the row's check box.
    static constexpr int firstCheckBoxId = 100;
    static constexpr int lastCheckBoxId = 99999;
    /// Likewise for the identifier of the button that cancels the row's grant.
    static constexpr int firstCancelButtonId = 100000;

    enum Column {
        Select,
        Platform,
        Broker,
        Account,
        State,
        Grantee,
        FirstDay,
        LastDay,
        Operation,
        ColumnCount
    };

    explicit CRestrictedUserTable(QWidget* parent);
    ~CRestrictedUserTable() override;

    void clearAccounts();
    /// Returns the new row, which is still to be filled.
    int addAccount(const boost::shared_ptr<CAccount>& account);

    /// The account of a row, null when there is no such row.
    boost::shared_ptr<CAccount> account(int row) const;
    /// The account key of a row, empty when there is no such row.
    QString key(int row) const;
    /// The row of an account key, -1 without one.
    int rowOf(const QString& key) const;

    /// Fill a row with the account and one of the three states it may be in.
    void showGranted(int row, const CAuthDetail& grant);
    void showPending(int row, const CPendingGrant& grant);
    void showFree(int row);

    /// Ticks or unticks a row without telling anybody.
    void setTicked(int row, bool ticked);
    /// Says in a pending row that its grant is not made yet.
    void markModified(int row);
    /// Whether the user ticked any row; the locked ticks of granted accounts do not count.
    bool hasSelection() const;

    /// The widget of the row that cancels its grant.
    QWidget* cancelButton(int row);

private:
    void describeCancelButtons();
    QString cancelButtonName(int row) const;
    void offerCancelButton(int row);
    QWidget* newCancelButton(int row, QWidget* parent);
    void showAccount(int row, bool locked, bool cancellable);
    void showState(int row, const QString& text, const char* colorKey);
    void showDays(int row, const CAuthLimit& limit);

    struct Row
    {
        boost::shared_ptr<CAccount> account;
        QString key;
        bool cancellable = false;
        QPointer<KZ::CSmallNormalButton> cancelButton;
    };
    QVector<Row> m_rows;
    QHash<QString, int> m_rowOfKey;
    CExpiryHints m_hints;
};

} // namespace GW
