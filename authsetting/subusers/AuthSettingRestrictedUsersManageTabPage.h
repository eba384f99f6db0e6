#pragma once

#include "authsetting/shell/AuthSettingTabPage.h"
#include "authsetting/shell/Outcomes.h"
#include "authsetting/shell/ReloadGate.h"

#include <QString>

namespace KZ {
class COddEvenRowTable;
class CWidgetList;
} // namespace KZ

namespace GW {

/// The user's restricted users with the number of accounts granted to each, their state, and a
/// button per row that disables an enabled one.
///
/// EVENT_BUTTON_CLICKED with the identifier 0 enables all of them, with 1 disables all. Of several
/// requests that are out at once only the last result to arrive is shown, whatever the others
/// brought; the other rows are right again after the next reload. Nothing is sent for rows that the
/// user does not see or whose state is another by now. GUI thread only.
class CAuthSettingRestrictedUsersManageTabPage : public IAuthSettingTabPage
{
    Q_OBJECT

public:
    explicit CAuthSettingRestrictedUsersManageTabPage(QWidget* parent);
    ~CAuthSettingRestrictedUsersManageTabPage() override;

    void reloadData() override;
    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override;

public Q_SLOTS:
    void slotSetsubuserResult(QString qSubuserId, bool bEnabled, bool bReslt, QString qsError);

private:
    void buildLayout();
    /// Makes a button of the operation column stand for a row.
    void bindButton(QWidget* widget, int row);
    QString buttonName(int row) const;
    void fill();
    void fillRow(int row, const QString& subUser);
    void onClicked(int id, void* sender);
    void toggleRow(int row, void* sender);
    void setAll(bool enable, void* sender);
    void showResult(const QString& subUser, bool ok);
    int rowOf(const QString& subUser) const;

    KZ::COddEvenRowTable* m_table = nullptr;
    KZ::CWidgetList* m_list = nullptr;
    /// Results still to come; also counts down for those of other pages' requests.
    int m_outstanding = 0;
    /// Number of the last command.
    quint64 m_request = 0;
    CReloadGate m_reloads;
    COutcomes m_outcomes;
};

} // namespace GW
