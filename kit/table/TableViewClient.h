#pragma once

class QInputMethodEvent;
class QKeyEvent;
class QPoint;

namespace KZ {

class CCellControls;

/// What the view asks of the table around it.
class ITableViewClient
{
public:
    ITableViewClient() = default;
    ITableViewClient(const ITableViewClient&) = delete;
    ITableViewClient& operator=(const ITableViewClient&) = delete;
    virtual ~ITableViewClient() = default;

    /// Something is about to be painted: rows and cell widgets have to be in place.
    virtual void aboutToPaint() = 0;
    /// Cells have moved within the viewport.
    virtual void cellsMoved() = 0;
    /// A cell widget wants another size.
    virtual void cellWidgetResized() = 0;
    virtual void viewResized() = 0;
    /// Brackets the view's own handling of what the user did by mouse or key.
    virtual void userActionBegun() = 0;
    virtual void userActionEnded() = 0;
    /// True when the key has been used up.
    virtual bool keyPressed(QKeyEvent& event) = 0;
    virtual void textComposed(QInputMethodEvent& event) = 0;
    virtual void contextMenuAsked(const QPoint& globalPos, int column) = 0;
    /// Whether Esc means something here and is not the dialog's.
    virtual bool needsEscape() const = 0;
    /// What the cells hold for the user to press or tick.
    virtual CCellControls& cellControls() = 0;
    /// Width in pixels that the widgets of a column need.
    virtual int cellWidgetWidth(int column) const = 0;
};

} // namespace KZ
