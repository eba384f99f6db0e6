#pragma once

#include "kit/widgets/BaseWidget.h"

#include <QString>
#include <QVector>

namespace GW {
class CAccount;
}

namespace KZ {
class COddEvenRowTable;
}

namespace host {

/// The signed-in user's accounts, own and received, with their grants; what ends soon is marked by
/// an icon and words. Reads the installed services. GUI thread only.
class AccountListView : public KZ::CBaseWidget
{
    Q_OBJECT

public:
    explicit AccountListView(QWidget* parent);
    ~AccountListView() override;

    /// Reads the accounts anew; the chosen account stays chosen.
    void reload();

    /// Key of the account in the current row, empty without one.
    QString currentAccount() const;
    /// Number of grants that end within ExpiryMark::nearDays days.
    int nearExpiryCount() const { return m_nearExpiryCount; }

    KZ::COddEvenRowTable* table() const { return m_table; }

    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override;

Q_SIGNALS:
    /// The user chose another row.
    void accountChosen(const QString& key);
    /// The user wants the settings of an account.
    void settingsRequested(const QString& key);

private:
    void fillRow(int row, const GW::CAccount& account);
    void fillGrant(int row, const GW::CAccount& account);
    void showContextMenu(const QPoint& position);
    void requestSettings();

    KZ::COddEvenRowTable* m_table;
    /// Account keys by row identifier.
    QVector<QString> m_keys;
    int m_nearExpiryCount = 0;
};

} // namespace host
