#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>

#include <functional>
#include <utility>
#include <vector>

class QWidget;

namespace KZ {

class CCheckBox;
class CRowStore;
class CTableModel;

/// The real check boxes of a table's ticks. Each is bound to one cell and kept equal with its tick
/// in both directions; one that is given back serves another cell later.
class CTickBoxes : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<void(int row, int column, bool value)>;

    CTickBoxes(const CRowStore& store, const CTableModel& model, QWidget* viewport);

    /// Called when somebody has ticked or locked a check box other than through show().
    void setHandlers(Handler checked, Handler enabled);

    /// A check box that stands for no cell.
    CCheckBox* take();
    void giveBack(CCheckBox* box);
    /// Check boxes that nobody took again.
    QList<QWidget*> spare() const;

    /// Lets a check box stand for a cell; `isForeign` for one that take() did not make.
    void bind(CCheckBox* box, int row, int column, bool isForeign);
    void release(const QObject* box) { m_cells.remove(box); }
    /// Brings a check box to the state of its cell's tick.
    void show(CCheckBox* box);
    /// The name by which a cell's check box goes.
    QString nameOf(int row, int column) const;
    /// Reports the state of `widget` to the handlers, when that is one of the check boxes.
    void read(const QWidget* widget);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void watch(CCheckBox* box);
    void toggled(const QObject* box, bool checked);

    const CRowStore& m_store;
    const CTableModel& m_model;
    QWidget* const m_viewport;
    Handler m_checked;
    Handler m_enabled;
    std::vector<QPointer<CCheckBox>> m_spare;
    QHash<const QObject*, std::pair<int, int>> m_cells;
    bool m_isShowing = false;
};

} // namespace KZ
