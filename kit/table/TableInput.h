#pragma once

#include <QObject>

class QInputMethodEvent;
class QKeyEvent;
class QMenu;
class QPoint;
class QWidget;

namespace KZ {

class CTableCore;

/// What the user does in a table by keys and context menu: ticking, copying, filtering, editing,
/// sorting.
class CTableInput : public QObject
{
    Q_OBJECT

public:
    CTableInput(CTableCore& core, int menuFlags);

    /// True when the key has been used up.
    bool keyPressed(QKeyEvent& event);
    /// Whether Esc leads back from a row's widget or closes the filter.
    bool needsEscape() const;
    void textComposed(QInputMethodEvent& event);
    void showMenu(const QPoint& globalPos, int column);
    /// Empties and closes the filter bar, without taking the focus from elsewhere.
    void clearFilter();
    /// Tells in the view's tool tip and accessible description what the keys do.
    void updateHint();

private:
    /// What the hint to the keys depends on.
    struct SHint
    {
        bool hasTicks = false;
        bool hasWidgets = false;
        bool isEditable = false;
        bool operator==(const SHint&) const = default;
    };

    void toggleSelectedTicks();
    void copySelection();
    QString selectionAsText() const;
    void openFilter();
    void closeFilter();
    void leaveFilter(int key);
    bool enterRow();
    bool returnToEditor();
    QWidget* focusedCellWidget() const;
    void moveInRow(QWidget* focused, int step);
    bool focusInRow(int row, int place, int step);
    bool cellWidgetKeyPressed(QWidget* focused, const QKeyEvent& event);
    void addSortActions(QMenu* menu, int column);

    CTableCore& m_core;
    const int m_menuFlags;
    SHint m_hint;
};

} // namespace KZ
