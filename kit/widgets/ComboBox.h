#pragma once

#include "kit/events/EventWidget.h"
#include "kit/resources/UiResourceChangeHandler.h"
#include "kit/widgets/EditTracker.h"

#include <QComboBox>

namespace KZ {

/// A box with a list, optionally editable (setEditable()). What the user does delivers
/// EVENT_TEXT_EDITED per keystroke, EVENT_TEXT_COMMITTED when he is done (Enter, leaving the box
/// with a changed text, picking from the list) and EVENT_FOCUS_LEFT when the focus leaves; what the
/// program sets delivers nothing. Typing neither completes nor adds entries. Without input an
/// editable box shows the beginning of its text; a text that is cut off has a tool tip.
class KZKIT_EXPORT CComboBox : public CEventWidgetT<QComboBox>, public CUiResourceChangeHandler
{
    Q_OBJECT

public:
    CComboBox(int id, QWidget* parent);
    ~CComboBox() override;

    int id() const { return m_id; }

    /// As QComboBox's; the editor takes texts up to the kit's maximum length.
    void setEditable(bool editable);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    void showPopup() override;
    void onUiResourceChanged() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void takeEditor(QLineEdit* editor);
    void commit();

    const int m_id;
    CEditTracker m_tracker;
};

} // namespace KZ
