#pragma once

#include <QObject>

class QInputMethodEvent;
class QKeyEvent;
class QMenu;
class QPoint;

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
    void textComposed(QInputMethodEvent& event);
    void showMenu(const QPoint& globalPos, int column);
    /// Empties and closes the filter bar, without taking the focus from elsewhere.
    void clearFilter();

private:
    void toggleSelectedTicks();
    void copySelection();
    QString selectionAsText() const;
    void openFilter();
    void closeFilter();
    void leaveFilter(int key);
    bool enterRow();
    void addSortActions(QMenu* menu, int column);

    CTableCore& m_core;
    const int m_menuFlags;
};

} // namespace KZ
