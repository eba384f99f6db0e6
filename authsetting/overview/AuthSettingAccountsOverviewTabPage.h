#pragma once

#include "authsetting/authorize/ExpiryHints.h"
#include "authsetting/services/AccountInfo.h"
#include "authsetting/services/AuthType.h"
#include "authsetting/shell/AuthSettingTabPage.h"
#include "authsetting/shell/Outcomes.h"
#include "authsetting/shell/ReloadGate.h"

#include <QVariant>
#include <QVector>

#include <vector>

namespace KZ {
struct CColumnWidgetKind;
class COddEvenRowTable;
} // namespace KZ

namespace GW {

class CAccount;
class CAccountTextCache;

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
    KZ::CColumnWidgetKind operationWidgets();
    void fill();
    void addRow(const CAccount& account, const QString& key, CAccountTextCache& texts);
    void fillGrant(int row, const QString& key, CAccountTextCache& texts);
    /// The row of an account key; -1 when there is none.
    int rowOf(const QString& key) const;
    void cancelGrant(int row);
    void showCancelResult(bool success, QString error);

    /// What a row shows besides its texts.
    struct Row
    {
        mbservice::EAuthType authType;
        /// Place of its grant's account among m_grantedAccounts, -1 without a grant.
        int grantedAccount;
    };

    KZ::COddEvenRowTable* m_table = nullptr;
    QVector<Row> m_rows;
    /// The accounts of the grants as they were when the rows were filled: a cancellation goes by
    /// what the row shows, whatever the client has learned since.
    std::vector<mbservice::CAccountInfo> m_grantedAccounts;
    /// Row and account of the last cancel request, and its number.
    int m_pendingRow = -1;
    QString m_pendingKey;
    quint64 m_pendingRequest = 0;
    CReloadGate m_reloads;
    COutcomes m_outcomes;
    CExpiryHints m_hints;
};

} // namespace GW
