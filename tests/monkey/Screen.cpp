#include "tests/monkey/Screen.h"

#include "authsetting/authorize/AuthSettingAccountsAuthorizeTabPage.h"
#include "authsetting/authorize/AuthSettingSingleAccountAuthorizeTabPage.h"
#include "authsetting/authorize/GrantMenu.h"
#include "authsetting/overview/AuthSettingAccountsOverviewTabPage.h"
#include "authsetting/overview/AuthSettingImportAuthorizationTabPage.h"
#include "authsetting/shell/AuthSettingIds.h"
#include "authsetting/shell/AuthSettingNavigator.h"
#include "authsetting/shell/RequestTag.h"
#include "authsetting/subusers/AuthSettingRestrictedUsersManageTabPage.h"
#include "authsetting/subusers/AuthSettingSingleRestrictedUserGeneralTabPage.h"
#include "kit/dates/SoftCalendarLineEdit.h"
#include "kit/table/OddEvenRowTable.h"
#include "kit/widgets/ComboBox.h"
#include "kit/widgets/LineEdit.h"
#include "kit/widgets/MediumNormalButton.h"
#include "kit/widgets/SimpleTextWidget.h"
#include "tests/authsetting/ShellTestTools.h"
#include "tests/monkey/World.h"

#include <QAbstractButton>
#include <QApplication>
#include <QProgressBar>
#include <QTableView>

namespace monkey {

namespace {

template <class Widget>
Widget* byId(const QWidget* root, int id)
{
    const QList<Widget*> widgets = root->findChildren<Widget*>();
    for (Widget* widget : widgets) {
        if (widget->id() == id)
            return widget;
    }
    return nullptr;
}

template <class Widget>
QString textById(const QWidget* root, int id)
{
    const Widget* widget = byId<Widget>(root, id);
    return widget ? widget->text() : QString();
}

Screen::Page pageOf(const GW::IAuthSettingTabPage* tab)
{
    if (qobject_cast<const GW::CAuthSettingAccountsOverviewTabPage*>(tab))
        return Screen::Overview;
    if (qobject_cast<const GW::CAuthSettingAccountsAuthorizeTabPage*>(tab))
        return Screen::Batch;
    if (qobject_cast<const GW::CAuthSettingImportAuthorizationTabPage*>(tab))
        return Screen::Import;
    if (qobject_cast<const GW::CAuthSettingRestrictedUsersManageTabPage*>(tab))
        return Screen::Manage;
    if (qobject_cast<const GW::CAuthSettingSingleRestrictedUserGeneralTabPage*>(tab))
        return Screen::SubUser;
    if (qobject_cast<const GW::CAuthSettingSingleAccountAuthorizeTabPage*>(tab)) {
        return tab->pageId() == GW::ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE
                   ? Screen::SingleAccount
                   : Screen::Received;
    }
    return Screen::NoPage;
}

/// Where a page's table shows what, -1 where it does not.
struct Columns
{
    int tick;
    int name;
    int state;
    int grantee;
    int first;
    int last;
};

Columns columnsOf(Screen::Page page)
{
    switch (page) {
    case Screen::Overview:
        return {-1, 2, 3, 4, 5, 6};
    case Screen::Batch:
    case Screen::SubUser:
        return {0, 3, 4, 5, 6, 7};
    case Screen::Manage:
        return {-1, 0, 2, -1, -1, -1};
    default:
        return {-1, 2, 3, 4, 5, 6};
    }
}

ScreenRow rowAt(const KZ::COddEvenRowTable* table, Screen::Page page, int viewRow)
{
    const QAbstractItemModel* model = table->view()->model();
    const auto text = [model, viewRow](int column) {
        return column < 0 ? QString() : model->index(viewRow, column).data().toString();
    };
    const Columns columns = columnsOf(page);
    ScreenRow row;
    row.name = page == Screen::Manage ? text(columns.name) : numberIn(text(columns.name));
    row.state = text(columns.state);
    row.grantee = text(columns.grantee);
    row.first = text(columns.first);
    row.last = text(columns.last);
    if (columns.tick >= 0) {
        const int id =
            model->index(viewRow, 0).data(KZ::COddEvenRowTable::ROW_IDENTIFIER_ROLE).toInt();
        row.isTicked = table->isItemChecked(id, columns.tick);
        row.isLocked = !table->isItemCheckEnabled(id, columns.tick);
    }
    return row;
}

} // namespace

GW::IAuthSettingTabPage* Screen::shownTab(const OpenDialog& dialog)
{
    const GW::CAuthSettingPage* page = dialog.isVisible() ? dialog.shownPage() : nullptr;
    if (!page)
        return nullptr;
    KZ::CStandardTabControl* tabs = page->tabControl();
    return qobject_cast<GW::IAuthSettingTabPage*>(tabs->getTabWidget(tabs->currentTabIndex()));
}

KZ::COddEvenRowTable* Screen::shownTable(const OpenDialog& dialog)
{
    const QWidget* tab = shownTab(dialog);
    return tab ? tab->findChild<KZ::COddEvenRowTable*>() : nullptr;
}

bool Screen::looksBusy(const OpenDialog& dialog)
{
    const auto* bar = dialog.findChild<QProgressBar*>();
    return bar && !bar->isHidden();
}

bool Screen::looksIdle(const OpenDialog& dialog)
{
    const auto* tree = dialog.findChild<GW::CAuthSettingNavigator*>();
    const GW::CAuthSettingPage* page = dialog.shownPage();
    return !looksBusy(dialog) && tree && tree->isEnabled() && (!page || page->isEnabled());
}

bool Screen::showsGrantMenu()
{
    return dynamic_cast<GW::CGrantMenu*>(QApplication::activePopupWidget()) != nullptr;
}

Screen Screen::read(const OpenDialog& dialog, const QWidget* target)
{
    Screen screen;
    screen.tab = shownTab(dialog);
    screen.page = pageOf(screen.tab);
    if (screen.page != NoPage)
        screen.tag = GW::requestTag(screen.tab);
    if (screen.page == Batch)
        screen.readBatch(screen.tab);
    else if (screen.page == SingleAccount || screen.page == Received)
        screen.readSingle(screen.tab);
    else if (screen.page == SubUser)
        screen.readSubUser(screen.tab);
    const bool hasRows = screen.page != SingleAccount && screen.page != Received;
    if (const auto* table = shownTable(dialog); table && hasRows)
        screen.readRows(table);
    screen.readTarget(target);
    const QWidget* modal = QApplication::activeModalWidget();
    if (const auto* edit =
            modal ? modal->findChild<QLineEdit*>(QStringLiteral("halden_input_edit")) : nullptr)
        screen.dialogPassword = edit->text();
    return screen;
}

void Screen::readBatch(const QWidget* tab)
{
    if (const auto* box = tab->findChild<KZ::CComboBox*>(QStringLiteral("halden_batch_grantee")))
        user = box->lineEdit()->text();
    first = textById<KZ::CSoftCalendarLineEdit>(tab, 1);
    last = textById<KZ::CSoftCalendarLineEdit>(tab, 2);
}

void Screen::readSingle(const QWidget* tab)
{
    constexpr int thresholdColumn = 2;
    account = numberIn(textById<KZ::CLineEdit>(tab, 2));
    if (const auto* text =
            tab->findChild<KZ::CSimpleTextWidget*>(QStringLiteral("halden_account_state")))
        state = text->text();
    if (const auto* box = tab->findChild<KZ::CComboBox*>())
        user = box->lineEdit()->text();
    first = textById<KZ::CSoftCalendarLineEdit>(tab, 4);
    last = textById<KZ::CSoftCalendarLineEdit>(tab, 5);
    buttonText = textById<KZ::CMediumNormalButton>(tab, 1);
    if (const auto* table = tab->findChild<KZ::COddEvenRowTable*>()) {
        hasCondition = table->isItemChecked(0, 0);
        threshold = table->itemText(0, thresholdColumn).toDouble();
        conditionIsOpen =
            table->view()->indexWidget(table->view()->model()->index(0, thresholdColumn));
    }
}

void Screen::readSubUser(const QWidget* tab)
{
    user = textById<KZ::CLineEdit>(tab, 0);
    userPassword = textById<KZ::CLineEdit>(tab, 1);
    if (const auto* text =
            tab->findChild<KZ::CSimpleTextWidget*>(QStringLiteral("halden_sub_user_state")))
        userIsEnabled = text->text() == QStringLiteral("已启用");
}

void Screen::readRows(const KZ::COddEvenRowTable* table)
{
    const int count = table->view()->model()->rowCount();
    for (int row = 0; row < count; ++row) {
        if (!table->view()->isRowHidden(row))
            rows.append(rowAt(table, page, row));
    }
    hidesRows = rows.size() < table->rowCount();
}

void Screen::readTarget(const QWidget* target)
{
    if (!target)
        return;
    targetName = target->objectName();
    if (const auto* button = qobject_cast<const QAbstractButton*>(target))
        targetText = button->text();
    for (const QWidget* parent = target->parentWidget(); parent; parent = parent->parentWidget()) {
        const auto* view = qobject_cast<const QTableView*>(parent);
        const auto* table =
            view ? dynamic_cast<KZ::COddEvenRowTable*>(view->parentWidget()) : nullptr;
        if (!table || !view->viewport()->isAncestorOf(target))
            continue;
        const QPoint centre = target->mapTo(view->viewport(), target->rect().center());
        const QModelIndex cell = view->indexAt(centre);
        hasTargetRow = cell.isValid();
        if (hasTargetRow)
            targetRow = rowAt(table, page, cell.row());
        return;
    }
}

} // namespace monkey
