#include "host/tour/TourPlaces.h"

#include "kit/table/OddEvenRowTable.h"
#include "kit/widgets/SimpleTextWidget.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QTabBar>
#include <QTableView>
#include <QTreeWidget>

namespace host {

namespace {

/// The first visible widget of class `Widget` in the user's window that `fits`.
template <class Widget, class Predicate>
Widget* find(Predicate fits)
{
    QWidget* window = TourPlaces::window();
    if (!window)
        return nullptr;
    const QList<Widget*> widgets = window->findChildren<Widget*>();
    for (Widget* widget : widgets) {
        if (widget->isVisible() && fits(widget))
            return widget;
    }
    return nullptr;
}

TourPlace placeOf(QWidget* widget, const QRect& part)
{
    return {widget, QRect(widget->mapToGlobal(part.topLeft()), part.size())};
}

TourPlace placeOf(QWidget* widget)
{
    return widget ? placeOf(widget, widget->rect()) : TourPlace();
}

/// A text without mnemonic and shortcut.
QString plain(const QString& text)
{
    QString result = text.section(QLatin1Char('\t'), 0, 0);
    const int mnemonic = result.indexOf(QStringLiteral("(&"));
    if (mnemonic >= 0)
        result.remove(mnemonic, 4);
    result.remove(QLatin1Char('&')).remove(QStringLiteral("…"));
    return result;
}

QModelIndex findRow(const QTableView* view, const QString& rowText)
{
    const QAbstractItemModel* model = view->model();
    for (int row = 0; row < model->rowCount(); ++row) {
        for (int column = 0; column < model->columnCount(); ++column) {
            const QModelIndex index = model->index(row, column);
            if (index.data().toString() == rowText)
                return index;
        }
    }
    return QModelIndex();
}

QTableView* viewWithRow(const QString& rowText)
{
    const auto* table = find<KZ::COddEvenRowTable>([&rowText](const KZ::COddEvenRowTable* table) {
        return findRow(table->view(), rowText).isValid();
    });
    return table ? table->view() : nullptr;
}

template <class Menu>
TourPlace actionPlace(Menu* menu, const QString& text)
{
    if (!menu)
        return TourPlace();
    const QList<QAction*> actions = menu->actions();
    for (QAction* action : actions) {
        if (plain(action->text()) == text && action->isEnabled())
            return placeOf(menu, menu->actionGeometry(action));
    }
    return TourPlace();
}

} // namespace

QWidget* TourPlaces::window()
{
    QWidget* modal = QApplication::activeModalWidget();
    return modal ? modal : QApplication::activeWindow();
}

TourPlace TourPlaces::named(const QString& name)
{
    return placeOf(find<QWidget>([&name](const QWidget* widget) {
        // A caption has the name of the editor that it stands before.
        const bool isCaption = qobject_cast<const KZ::CSimpleTextWidget*>(widget) != nullptr;
        return widget->objectName() == name || (!isCaption && widget->accessibleName() == name);
    }));
}

TourPlace TourPlaces::button(const QString& text)
{
    return placeOf(find<QAbstractButton>(
        [&text](const QAbstractButton* button) { return plain(button->text()) == text; }));
}

TourPlace TourPlaces::withToolTip(const QString& toolTip)
{
    return placeOf(find<QAbstractButton>(
        [&toolTip](const QAbstractButton* button) { return button->toolTip() == toolTip; }));
}

TourPlace TourPlaces::tab(const QString& title)
{
    int index = -1;
    QTabBar* bar = find<QTabBar>([&](const QTabBar* candidate) {
        for (int i = 0; i < candidate->count(); ++i) {
            if (candidate->tabText(i) == title)
                index = i;
        }
        return index >= 0;
    });
    return bar ? placeOf(bar, bar->tabRect(index)) : TourPlace();
}

TourPlace TourPlaces::treeNode(const QString& text)
{
    auto* tree = find<QTreeWidget>([](const QTreeWidget*) { return true; });
    if (!tree)
        return TourPlace();
    const QList<QTreeWidgetItem*> items =
        tree->findItems(text, Qt::MatchExactly | Qt::MatchRecursive);
    if (items.isEmpty())
        return TourPlace();
    tree->scrollToItem(items.first());
    return placeOf(tree->viewport(), tree->visualItemRect(items.first()));
}

TourPlace TourPlaces::menuBarItem(const QString& text)
{
    return actionPlace(find<QMenuBar>([](const QMenuBar*) { return true; }), text);
}

TourPlace TourPlaces::menuItem(const QString& text)
{
    return actionPlace(qobject_cast<QMenu*>(QApplication::activePopupWidget()), text);
}

TourPlace TourPlaces::cell(const QString& rowText, int column)
{
    QTableView* view = viewWithRow(rowText);
    if (!view)
        return TourPlace();
    const QModelIndex index = findRow(view, rowText).siblingAtColumn(column);
    view->scrollTo(index);
    return placeOf(view->viewport(), view->visualRect(index));
}

QStringList TourPlaces::rowTexts(const QString& rowText)
{
    QStringList texts;
    const QTableView* view = viewWithRow(rowText);
    if (!view)
        return texts;
    const QModelIndex found = findRow(view, rowText);
    for (int column = 0; column < view->model()->columnCount(); ++column)
        texts.append(found.siblingAtColumn(column).data().toString());
    return texts;
}

} // namespace host
