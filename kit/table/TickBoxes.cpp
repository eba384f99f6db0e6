#include "kit/table/TickBoxes.h"

#include "kit/table/DisplayText.h"
#include "kit/table/RowStore.h"
#include "kit/table/TableModel.h"
#include "kit/widgets/CheckBox.h"

#include <QEvent>
#include <QScopeGuard>

#include <utility>

namespace KZ {

namespace {

/// Texts of a row that name it to assistive tools, and how much of each.
constexpr int NAMING_TEXTS = 3;
constexpr qsizetype NAMING_LENGTH = 48;
constexpr std::pair<int, int> NO_CELL{-1, -1};

} // namespace

CTickBoxes::CTickBoxes(const CRowStore& store, const CTableModel& model, QWidget* viewport)
    : QObject(viewport), m_store(store), m_model(model), m_viewport(viewport)
{
}

void CTickBoxes::setHandlers(Handler checked, Handler enabled)
{
    m_checked = std::move(checked);
    m_enabled = std::move(enabled);
}

CCheckBox* CTickBoxes::take()
{
    while (!m_spare.empty()) {
        const QPointer<CCheckBox> box = m_spare.back();
        m_spare.pop_back();
        if (box)
            return box;
    }
    auto* const box = new CCheckBox(0, m_viewport);
    // A click leaves the focus with the table, whose keys work on all selected rows.
    box->setFocusPolicy(Qt::NoFocus);
    watch(box);
    return box;
}

void CTickBoxes::giveBack(CCheckBox* box)
{
    release(box);
    m_spare.emplace_back(box);
}

QList<QWidget*> CTickBoxes::spare() const
{
    QList<QWidget*> boxes;
    for (const QPointer<CCheckBox>& box : m_spare) {
        if (box)
            boxes.append(box);
    }
    return boxes;
}

void CTickBoxes::watch(CCheckBox* box)
{
    connect(box, &QCheckBox::toggled, this, [this, box](bool checked) { toggled(box, checked); });
    connect(box, &QObject::destroyed, this, [this](QObject* gone) { release(gone); });
    box->installEventFilter(this);
}

void CTickBoxes::bind(CCheckBox* box, int row, int column, bool isForeign)
{
    m_cells.insert(box, {row, column});
    if (isForeign) {
        box->setFocusPolicy(Qt::NoFocus);
        watch(box);
    }
    show(box);
}

QString CTickBoxes::nameOf(int row, int column) const
{
    QString name = safeText(m_model.headerText(column), NAMING_LENGTH);
    int texts = 0;
    for (int other = 0; other < m_store.columnCount() && texts < NAMING_TEXTS; ++other) {
        const QString& text = m_store.text(row, other);
        if (text.isEmpty())
            continue;
        name += u' ';
        name += safeText(text, NAMING_LENGTH);
        ++texts;
    }
    return name;
}

void CTickBoxes::show(CCheckBox* box)
{
    const auto found = m_cells.constFind(box);
    if (found == m_cells.cend())
        return;
    const std::pair<int, int> cell = *found;
    const CRowStore::STick* const present = m_store.tick(cell.first, cell.second);
    if (!present)
        return;
    const CRowStore::STick tick = *present;
    const QPointer<CTickBoxes> guard(this);
    const QPointer<CCheckBox> shown(box);
    // The box tells others about its changes, and they may rebuild the table.
    const auto isBound = [&] { return guard && shown && m_cells.value(box, NO_CELL) == cell; };
    const bool wasShowing = std::exchange(m_isShowing, true);
    const auto done = qScopeGuard([&guard, wasShowing] {
        if (guard)
            guard->m_isShowing = wasShowing;
    });
    box->setId(tick.id);
    box->setAccessibleName(nameOf(cell.first, cell.second));
    if (isBound())
        box->setEnabled(tick.enabled);
    if (isBound())
        box->setChecked(tick.checked);
}

void CTickBoxes::read(const QWidget* widget)
{
    if (m_cells.contains(widget))
        toggled(widget, static_cast<const CCheckBox*>(widget)->isChecked());
}

void CTickBoxes::toggled(const QObject* box, bool checked)
{
    const auto cell = m_cells.constFind(box);
    if (m_isShowing || cell == m_cells.cend() || !m_checked)
        return;
    const auto [row, column] = *cell;
    const Handler handler = m_checked;
    handler(row, column, checked);
}

bool CTickBoxes::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::EnabledChange && !m_isShowing && m_enabled) {
        const auto cell = m_cells.constFind(object);
        // Only a lock of its own counts, not that the whole table is disabled.
        const bool isLocked = static_cast<QWidget*>(object)->testAttribute(Qt::WA_ForceDisabled);
        if (cell != m_cells.cend()) {
            const auto [row, column] = *cell;
            const QPointer<QObject> guard(object);
            const Handler handler = m_enabled;
            handler(row, column, !isLocked);
            return guard.isNull();
        }
    }
    return false;
}

} // namespace KZ
