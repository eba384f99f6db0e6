#include "tests/postgresql/DeskSight.h"

#include "authsetting/shell/AuthSettingDialog.h"
#include "host/HostApplication.h"
#include "host/client/AccountListView.h"
#include "host/client/ClientWindow.h"
#include "host/client/MessageArea.h"
#include "host/signin/SignInDialog.h"
#include "host/tour/TourPlaces.h"
#include "kit/table/OddEvenRowTable.h"
#include "kit/tips/MessageTip.h"
#include "kit/widgets/SimpleTextWidget.h"

#include <QJsonArray>
#include <QProgressBar>
#include <QTabBar>
#include <QTableView>

namespace {

template <class Widget>
const Widget* visibleChild(const QWidget* parent, const QString& name = QString())
{
    const QList<Widget*> children = parent->findChildren<Widget*>(name);
    for (const Widget* child : children) {
        if (child->isVisible())
            return child;
    }
    return nullptr;
}

// The text of the first visible text in a widget with this name.
QString textIn(const QWidget* parent, const QString& name)
{
    const auto* place = visibleChild<QWidget>(parent, name);
    if (!place)
        return QString();
    const auto* own = qobject_cast<const KZ::CSimpleTextWidget*>(place);
    const auto* text = own ? own : visibleChild<KZ::CSimpleTextWidget>(place);
    return text ? text->text() : QString();
}

QJsonArray rowTexts(const QTableView* view, int row)
{
    QJsonArray texts;
    const QAbstractItemModel* model = view->model();
    for (int column = 0; column < model->columnCount(); ++column)
        texts.append(model->index(row, column).data().toString());
    return texts;
}

QJsonArray allTexts(const KZ::COddEvenRowTable* table)
{
    QJsonArray rows;
    if (!table || !table->isVisible())
        return rows;
    for (int row = 0; row < table->view()->model()->rowCount(); ++row)
        rows.append(rowTexts(table->view(), row));
    return rows;
}

void lookAtDialog(const QWidget* dialog, QJsonObject& seen)
{
    if (const auto* bar = visibleChild<QTabBar>(dialog))
        seen[QStringLiteral("tab")] = bar->tabText(bar->currentIndex());
    const auto* table = visibleChild<KZ::COddEvenRowTable>(dialog);
    seen[QStringLiteral("table")] = allTexts(table);
    seen[QStringLiteral("usable")] = table && table->view()->isEnabled();
    const QModelIndexList chosen =
        table ? table->view()->selectionModel()->selectedRows() : QModelIndexList();
    if (!chosen.isEmpty())
        seen[QStringLiteral("chosen")] = rowTexts(table->view(), chosen.constFirst().row());
    seen[QStringLiteral("busy")] = visibleChild<QProgressBar>(dialog) != nullptr;
    seen[QStringLiteral("progress")] = textIn(dialog, QStringLiteral("halden_progress_count"));
}

QJsonArray tipTexts()
{
    QJsonArray texts;
    const QList<KZ::CMessageTip*> tips = KZ::CMessageTip::visibleTips();
    for (const KZ::CMessageTip* tip : tips) {
        if (!tip->isVisible())
            continue;
        const QStringList all = tip->texts();
        for (const QString& text : all)
            texts.append(text);
    }
    return texts;
}

} // namespace

QJsonObject lookAt(const host::HostApplication& client)
{
    QJsonObject seen;
    if (const QWidget* window = host::TourPlaces::window())
        seen[QStringLiteral("window")] = window->windowTitle();
    if (const host::SignInDialog* dialog = client.signInDialog()) {
        seen[QStringLiteral("signInError")] =
            textIn(dialog, QStringLiteral("halden_client_sign_in_error"));
    }
    if (const host::ClientWindow* window = client.clientWindow()) {
        seen[QStringLiteral("connection")] =
            textIn(window, QStringLiteral("halden_client_connection"));
        seen[QStringLiteral("notice")] =
            textIn(window, QStringLiteral("halden_client_offline_notice"));
        seen[QStringLiteral("accounts")] = allTexts(window->accountList()->table());
        seen[QStringLiteral("messages")] = allTexts(window->messageArea()->table());
        if (window->settingsDialog()->isVisible())
            lookAtDialog(window->settingsDialog(), seen);
    }
    seen[QStringLiteral("tips")] = tipTexts();
    return seen;
}
