#pragma once

#include "authsetting/authorize/ExpiryHints.h"
#include "authsetting/services/AccountInfo.h"
#include "authsetting/shell/AuthSettingTabPage.h"

#include <QMap>
#include <QVariant>

#include <boost/shared_ptr.hpp>

namespace KZ {
class COddEvenRowTable;
}

namespace GW {

class CAccount;

/// The tab "账号总览": the user's own accounts with the grant of each, which a button in the row
/// cancels on the server. The table's layout is kept in the user's configuration.
class CAuthSettingAccountsOverviewTabPage : public IAuthSettingTabPage
{
    Q_OBJECT

public:
    explicit CAuthSettingAccountsOverviewTabPage(QWidget* parent);
    ~CAuthSettingAccountsOverviewTabPage() override;

    void reloadData() override;
    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override;

public Q_SLOTS:
    void slotDelAuthResult(QString user, mbservice::CAccountInfo account, QVariant tag,
                           bool success, QString error);

private:
    void buildTable();
    void addRow(const boost::shared_ptr<CAccount>& account);
    void fillGrant(int row, const QString& key);
    void cancelGrant(int row);
    void showCancelResult(bool success, QString error);

    KZ::COddEvenRowTable* m_table = nullptr;
    /// The account of the grant in each row that has one.
    QMap<int, mbservice::CAccountInfo> m_rowAccounts;
    int m_pendingRow = -1;
    CExpiryHints m_hints;
};

} // namespace GW
