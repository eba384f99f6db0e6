#include "kit/widgets/ComboBox.h"

#include "kit/events/EventIds.h"
#include "kit/resources/KitStyle.h"
#include "kit/resources/UiResource.h"
#include "kit/widgets/EditorDisplay.h"
#include "kit/widgets/EditorMenu.h"
#include "kit/widgets/LineEdit.h"
#include "kit/widgets/PlainTextValidator.h"

#include <QAbstractItemView>
#include <QContextMenuEvent>
#include <QFocusEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QWheelEvent>

namespace KZ {

CComboBox::CComboBox(int id, QWidget* parent) : CEventWidgetT<QComboBox>(parent), m_id(id)
{
    setStyle(kitStyle());
    setInsertPolicy(QComboBox::NoInsert);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    resize(CComboBox::sizeHint());
    setAttribute(Qt::WA_Resized, false);
    connect(this, &QComboBox::activated, this, &CComboBox::commit);
}

CComboBox::~CComboBox() = default;

void CComboBox::setEditable(bool editable)
{
    QComboBox::setEditable(editable);
    if (editable)
        takeEditor(lineEdit());
}

void CComboBox::takeEditor(QLineEdit* editor)
{
    setCompleter(nullptr);
    editor->setStyle(kitStyle());
    editor->setAccessibleName(accessibleName());
    editor->setMaxLength(CLineEdit::MAX_TEXT_LENGTH);
    editor->setValidator(new CPlainTextValidator(editor));
    editor->installEventFilter(this);
    // The base would pick a list entry that equals the typed text, as if the user had picked it.
    disconnect(editor, &QLineEdit::editingFinished, this, nullptr);
    connect(editor, &QLineEdit::returnPressed, this, &CComboBox::commit);
    connect(editor, &QLineEdit::textChanged, this, [this, editor] {
        m_tracker.textChanged(currentText());
        showTextFromStart(editor);
    });
    connect(editor, &QLineEdit::textEdited, this, [this](const QString& text) {
        m_tracker.textEdited(text);
        deliverEvent(EVENT_TEXT_EDITED, m_id, 0, text, static_cast<QWidget*>(this));
    });
}

void CComboBox::commit()
{
    m_tracker.commit(currentText());
    deliverEvent(EVENT_TEXT_COMMITTED, m_id, 0, currentText(), static_cast<QWidget*>(this));
}

QSize CComboBox::sizeHint() const
{
    return {CUiResource::getSize(QStringLiteral("gw_siz_kit_editor_width")),
            CUiResource::getSize(QStringLiteral("gw_siz_kit_editor_height"))};
}

QSize CComboBox::minimumSizeHint() const
{
    return {2 * CUiResource::getSize(QStringLiteral("gw_siz_kit_editor_button_width")),
            CUiResource::getSize(QStringLiteral("gw_siz_kit_editor_height"))};
}

void CComboBox::showPopup()
{
    QWidget* const frame = view()->parentWidget();
    applyKitStyle(frame);
    QPalette palette = CUiResource::palette();
    palette.setColor(QPalette::Base, CUiResource::getColor(QStringLiteral("clr_menu")));
    frame->setPalette(palette);
    frame->setFont(font());
    view()->setAccessibleName(accessibleName());
    QComboBox::showPopup();
}

void CComboBox::onUiResourceChanged()
{
    update();
}

bool CComboBox::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == lineEdit() && event->type() == QEvent::ContextMenu) {
        showEditorMenu(lineEdit(), static_cast<QContextMenuEvent*>(event)->globalPos());
        return true;
    }
    if (watched == lineEdit() && event->type() == QEvent::ToolTip && toolTip().isEmpty() &&
        lineEdit()->toolTip().isEmpty() &&
        showCutText(lineEdit(), *static_cast<QHelpEvent*>(event)))
        return true;
    return CEventWidgetT<QComboBox>::eventFilter(watched, event);
}

void CComboBox::changeEvent(QEvent* event)
{
    CEventWidgetT<QComboBox>::changeEvent(event);
    if (event->type() == QEvent::EnabledChange && lineEdit())
        showTextFromStart(lineEdit());
}

void CComboBox::focusOutEvent(QFocusEvent* event)
{
    CEventWidgetT<QComboBox>::focusOutEvent(event);
    if (!CEditTracker::endsEditing(event->reason()))
        return;
    const QPointer<CComboBox> guard(this);
    if (isEditable() && m_tracker.isChanged(currentText()))
        commit();
    if (guard)
        deliverEvent(EVENT_FOCUS_LEFT, m_id, 0, currentText(), static_cast<QWidget*>(this));
}

void CComboBox::keyPressEvent(QKeyEvent* event)
{
    CEventWidgetT<QComboBox>::keyPressEvent(event);
    // Enter is done with here: in a window of the host it must not press a default button.
    if (isEditable() && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
        event->accept();
}

void CComboBox::wheelEvent(QWheelEvent* event)
{
    // Scrolling a page with the mouse over the box must not change what is chosen in it.
    event->ignore();
}

} // namespace KZ
