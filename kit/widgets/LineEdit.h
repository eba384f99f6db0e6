#pragma once

#include "kit/events/EventWidget.h"
#include "kit/resources/UiResourceChangeHandler.h"
#include "kit/widgets/EditTracker.h"

#include <QLineEdit>

namespace KZ {

/// A one-line editor. What the user types delivers EVENT_TEXT_EDITED, a finished change (Enter, or
/// leaving the editor with a changed text) EVENT_TEXT_COMMITTED, leaving it EVENT_FOCUS_LEFT;
/// setText() by the program delivers nothing. Without input it shows the beginning of its text; a
/// text that is cut off has a tool tip.
class KZKIT_EXPORT CLineEdit : public CEventWidgetT<QLineEdit>, public CUiResourceChangeHandler
{
    Q_OBJECT

public:
    /// Longest text, in UTF-16 units, that an editor of the kit takes: no name, account or password
    /// of the client comes near it, and a pasted document is cut instead of laid out.
    static constexpr int MAX_TEXT_LENGTH = 255;

    CLineEdit(int id, QWidget* parent);
    ~CLineEdit() override;

    int id() const { return m_id; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    void onUiResourceChanged() override;

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void commit();

    const int m_id;
    CEditTracker m_tracker;
};

} // namespace KZ
