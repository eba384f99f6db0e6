#pragma once

#include "kit/events/EventWidget.h"
#include "kit/resources/UiResourceChangeHandler.h"

#include <QDialog>
#include <QPoint>

namespace KZ {

class CCloseGlyph;

/// Base of the kit's dialogs: a window without the system's frame that paints its own title bar and
/// border, moves when the title bar is dragged and hides on Esc, on its close glyph and on
/// EVENT_BUTTON_CLICKED with ID_BUTTON_CLOSE, each time through close(), so that closeEvent() may
/// refuse. Enter never presses a button but the focused one. Events that it does not handle go on
/// to the deliverer it was opened from: a dialog that asks for something swallows its own editors'
/// events. exec() returns Rejected when the dialog dies inside it. GUI thread only.
class KZKIT_EXPORT CBaseDialog : public CEventWidgetT<QDialog>, public CUiResourceChangeHandler
{
    Q_OBJECT

public:
    /// Identifier of every button that closes its dialog.
    static constexpr int ID_BUTTON_CLOSE = 102;

    explicit CBaseDialog(QWidget* parent);
    ~CBaseDialog() override;

    /// Text of the title bar, also the window's title.
    void setTitle(const QString& title);
    QString title() const { return windowTitle(); }

    /// Height of the title bar and width of the border, in pixels; the inside of the dialog begins
    /// at (borderWidth(), titleBarHeight() + borderWidth()).
    int titleBarHeight() const;
    int borderWidth() const;

    /// The inside of the dialog, in its own coordinates.
    QRect innerRect() const;

    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override;
    void onUiResourceChanged() override;

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void takeTheme();
    void syncPosition();
    QRect titleBarRect() const;

    CCloseGlyph* m_closeGlyph;
    QPoint m_dragOffset;
    bool m_dragging = false;
};

} // namespace KZ
