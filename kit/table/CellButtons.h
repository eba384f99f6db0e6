#pragma once

#include <QObject>

#include <functional>

class QWidget;

namespace KZ {

/// Watches the buttons of cell widgets: which of them is being pressed, so that it does not move on
/// to another row meanwhile, and that none is pressed which stands for no row. Arrow keys go past
/// them to the view, because a button among others would hand the focus to another row's.
class CCellButtons : public QObject
{
    Q_OBJECT

public:
    /// `standsForRow` tells of a widget whether it is, or is in, the widget of a cell.
    CCellButtons(std::function<bool(const QWidget*)> standsForRow, QObject* parent);

    /// Watches the buttons in and below the widget.
    void watch(QWidget* widget);
    /// Whether a mouse button went down in or below the widget and has not come up again.
    bool isPressed(const QWidget* widget) const;

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    const std::function<bool(const QWidget*)> m_standsForRow;
    /// Only compared, never looked into.
    const QObject* m_pressed = nullptr;
};

} // namespace KZ
