#pragma once

#include "authsetting/shell/AuthSettingTabPage.h"
#include "authsetting/shell/Outcomes.h"
#include "authsetting/shell/ReloadGate.h"

#include <QString>

namespace KZ {
class COddEvenRowTable;
}

namespace GW {

class CAccount;
class CExpiryHints;

/// The accounts that other users granted to the user, and the import of a grant's file.
///
/// EVENT_BUTTON_CLICKED with the identifier 0 is the import command. GUI thread only.
class CAuthSettingImportAuthorizationTabPage : public IAuthSettingTabPage
{
    Q_OBJECT

public:
    explicit CAuthSettingImportAuthorizationTabPage(QWidget* parent);
    ~CAuthSettingImportAuthorizationTabPage() override;

    void reloadData() override;
    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override;

public Q_SLOTS:
    /// Takes every validation, whoever asked for it: results of files carry no tag.
    void slotValidAuth(QString qsKey, QString qsPassword, bool bSuccess, QString qsError);

private:
    void buildLayout();
    void fill();
    void fillRow(int row, const CAccount& account, const CExpiryHints& hints);
    void chooseFile();
    void importFile(const QString& path, const QString& password);
    /// Whether the user went to another page since he saw this one; tells him so.
    bool isLeft(bool wasSeen);
    void showResult(bool success, const QString& error);

    /// Never set: every tip of this page is shown where the user looks.
    QWidget* m_tipAnchor = nullptr;
    KZ::COddEvenRowTable* m_table = nullptr;
    /// Number of the last import.
    quint64 m_import = 0;
    CReloadGate m_reloads;
    COutcomes m_outcomes;
};

} // namespace GW
