#pragma once

#include "kit/table/OddEvenRowTable.h"
#include "tests/authsetting/ModalDriver.h"
#include "tests/authsetting/ShellTestTools.h"
#include "tests/support/TestCase.h"
#include "tests/support/fakes/FakeServices.h"

#include <QTableView>

#include <climits>

/// The widget of a class of the kit that carries the identifier `id`, null without one.
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

/// The one tip that is shown, null when there is none or more than one.
inline KZ::CMessageTip* onlyTip()
{
    const QList<KZ::CMessageTip*> tips = KZ::CMessageTip::visibleTips();
    return tips.size() == 1 ? tips.first() : nullptr;
}

/// Fails unless exactly one tip is shown, at `tipAnchor`, with these texts and this kind.
#define VERIFY_TIP(tipAnchor, tipTexts, tipKind)                                                   \
    do {                                                                                           \
        KZ::CMessageTip* shownTip = onlyTip();                                                     \
        QVERIFY2(shownTip, "there is not exactly one tip");                                        \
        QCOMPARE(shownTip->texts(), QStringList(tipTexts));                                        \
        QCOMPARE(shownTip->kind(), tipKind);                                                       \
        QCOMPARE(shownTip->anchor(), static_cast<QWidget*>(tipAnchor));                            \
    } while (false)

/// Names the platform 1 and its broker "9000" for futures and for stock accounts.
inline void nameFirms(FakeServices& services)
{
    const QPair<int, QString> broker(1, QStringLiteral("9000"));
    services.config.addPlatform(1, QStringLiteral("期货平台"));
    services.config.addStkPlatform(1, QStringLiteral("股票平台"));
    services.user.brokers.insert(broker, QStringLiteral("远山期货"));
    services.user.stkBrokers.insert(broker, QStringLiteral("临江证券"));
}

/// The fake services' day.
inline QDate testToday()
{
    return QDate(2026, 3, 2);
}

/// The texts of a table row, the cells' widgets left out.
inline QStringList rowTexts(const KZ::COddEvenRowTable* table, int row)
{
    QStringList texts;
    for (int column = 0; column < table->columnCount(); ++column)
        texts.append(table->itemText(row, column));
    return texts;
}

inline QStringList headerTexts(const KZ::COddEvenRowTable* table)
{
    QStringList texts;
    for (int column = 0; column < table->columnCount(); ++column)
        texts.append(table->headerText(column));
    return texts;
}

/// The tool tip of a cell that shows an icon, empty without one.
inline QString expiryMark(const KZ::COddEvenRowTable* table, int row, int column)
{
    const QAbstractItemModel* model = table->view()->model();
    for (int at = 0; at < model->rowCount(); ++at) {
        const QModelIndex cell = model->index(at, column);
        if (cell.data(KZ::COddEvenRowTable::ROW_IDENTIFIER_ROLE).toInt() != row)
            continue;
        return cell.data(Qt::DecorationRole).isNull() ? QString()
                                                      : cell.data(Qt::ToolTipRole).toString();
    }
    return QStringLiteral("no such row");
}

/// How many pixels `widget` stands right of the middle of its cell in a table that is shown.
inline int middleInCell(const KZ::COddEvenRowTable* table, int row, int column,
                        const QWidget* widget)
{
    const QTableView* view = table->view();
    for (int at = 0; at < view->model()->rowCount(); ++at) {
        const QModelIndex cell = view->model()->index(at, column);
        if (cell.data(KZ::COddEvenRowTable::ROW_IDENTIFIER_ROLE).toInt() == row) {
            const int middle = view->visualRect(cell).center().x();
            return widget->mapTo(view->viewport(), widget->rect().center()).x() - middle;
        }
    }
    return INT_MAX;
}

/// Seconds of a day's first moment in the exchange time zone.
inline qint32 secondsOf(const QDate& day)
{
    return static_cast<qint32>(day.startOfDay(utils::exchangeTimeZone()).toSecsSinceEpoch());
}
