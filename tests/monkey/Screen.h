#pragma once

#include <QDate>
#include <QString>
#include <QVariant>
#include <QVector>

class OpenDialog;
class QTableView;
class QWidget;

namespace GW {
class IAuthSettingTabPage;
}
namespace KZ {
class COddEvenRowTable;
}

namespace monkey {

/// A row of a table as it is painted.
struct ScreenRow
{
    /// Of the account, or the sub-user's name.
    QString name;
    QString state;
    QString grantee;
    QString first;
    QString last;
    bool isTicked = false;
    bool isLocked = false;
};

/// What the dialog shows at one moment, read from its widgets and nothing else.
struct Screen
{
    enum Page { NoPage, Overview, Batch, SingleAccount, Received, Import, Manage, SubUser };

    /// `target` is the widget that the user is about to press or release, may be null.
    static Screen read(const OpenDialog& dialog, const QWidget* target);

    /// The tab page in front, null without one.
    static GW::IAuthSettingTabPage* shownTab(const OpenDialog& dialog);
    /// The table of the tab page in front that the user chooses accounts or sub-users in.
    static KZ::COddEvenRowTable* shownTable(const OpenDialog& dialog);
    static bool looksBusy(const OpenDialog& dialog);
    static bool looksIdle(const OpenDialog& dialog);
    /// Whether a menu that grants is open.
    static bool showsGrantMenu();

    Page page = NoPage;
    const GW::IAuthSettingTabPage* tab = nullptr;
    QVariant tag;

    /// The form above the table, as far as the page has one.
    QString account;
    QString state;
    QString user;
    bool userIsEnabled = false;
    QString userPassword;
    QString first;
    QString last;
    bool hasCondition = false;
    bool conditionIsOpen = false;
    double threshold = 0;
    QString buttonText;

    QVector<ScreenRow> rows;
    bool hidesRows = false;

    /// What the user is about to press: its object name and text, and the row that it stands in.
    QString targetName;
    QString targetText;
    bool hasTargetRow = false;
    ScreenRow targetRow;

    /// The text in the password dialog, when it is open.
    QString dialogPassword;

private:
    void readBatch(const QWidget* tab);
    void readSingle(const QWidget* tab);
    void readSubUser(const QWidget* tab);
    void readRows(const KZ::COddEvenRowTable* table);
    void readTarget(const QWidget* target);
};

} // namespace monkey
