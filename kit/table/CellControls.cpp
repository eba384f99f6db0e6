#include "kit/table/CellControls.h"

#include "kit/accessible/InReach.h"
#include "kit/table/CellWidgetLayer.h"
#include "kit/table/CellWidgetTools.h"
#include "kit/table/ColumnWidgets.h"
#include "kit/table/RowStore.h"
#include "kit/table/TableModel.h"
#include "kit/table/TickBoxes.h"

#include <QAbstractButton>
#include <QTableView>

namespace KZ {

CCellControls::CCellControls(QTableView* view, const CRowStore& store, CTableModel& model,
                             CCellWidgetLayer& layer)
    : m_view(view), m_store(store), m_model(model), m_layer(layer)
{
}

CCellControls::Kind CCellControls::kind(int row, int column) const
{
    if (m_store.tick(row, column))
        return Kind::Tick;
    return name(row, column).isEmpty() ? Kind::None : Kind::Button;
}

QString CCellControls::columnName(int row, int column) const
{
    const CColumnWidgetKind* const kind = m_layer.columnWidgets().kind(column);
    return kind && kind->accessibleName ? kind->accessibleName(row) : QString();
}

QAbstractButton* CCellControls::existingButton(int row, int column) const
{
    QWidget* const widget = m_layer.existingWidget(row, column);
    if (!widget || isHiddenByOwner(widget))
        return nullptr;
    if (auto* const button = qobject_cast<QAbstractButton*>(widget))
        return button;
    const auto buttons = widget->findChildren<QAbstractButton*>();
    for (QAbstractButton* const button : buttons) {
        if (button->isVisibleTo(widget))
            return button;
    }
    return nullptr;
}

QString CCellControls::name(int row, int column) const
{
    if (m_store.tick(row, column))
        return m_layer.boxes().nameOf(row, column);
    if (!m_store.isWidgetCell(row, column))
        return {};
    const QString told = columnName(row, column);
    if (!m_layer.existingWidget(row, column))
        return told;
    const QAbstractButton* const button = existingButton(row, column);
    if (!button)
        return {};
    if (!told.isEmpty())
        return told;
    return button->accessibleName().isEmpty() ? button->text() : button->accessibleName();
}

bool CCellControls::isReachable(int row) const
{
    return m_model.viewRowOf(row) >= 0 && isInReach(m_view->viewport());
}

bool CCellControls::isUsable(int row, int column) const
{
    if (!isReachable(row))
        return false;
    if (const CRowStore::STick* const tick = m_store.tick(row, column))
        return tick->enabled;
    if (m_layer.existingWidget(row, column)) {
        const QAbstractButton* const button = existingButton(row, column);
        return button && button->isEnabled();
    }
    const CColumnWidgetKind* const kind = m_layer.columnWidgets().kind(column);
    return kind && kind->press && !name(row, column).isEmpty();
}

bool CCellControls::isChecked(int row, int column) const
{
    const CRowStore::STick* const tick = m_store.tick(row, column);
    return tick && tick->checked;
}

void CCellControls::use(int row, int column)
{
    if (!isUsable(row, column))
        return;
    if (m_store.tick(row, column)) {
        m_model.setData(m_model.index(m_model.viewRowOf(row), column),
                        isChecked(row, column) ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
        return;
    }
    if (QAbstractButton* const button = existingButton(row, column)) {
        button->click();
        return;
    }
    // A copy, because the owner's code may set another kind.
    const auto press = m_layer.columnWidgets().kind(column)->press;
    press(row);
}

} // namespace KZ
