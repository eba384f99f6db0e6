#include "kit/widgets/LineEdit.h"

#include "kit/events/EventIds.h"
#include "kit/resources/KitStyle.h"
#include "kit/resources/UiResource.h"
#include "kit/widgets/EditorDisplay.h"
#include "kit/widgets/EditorMenu.h"
#include "kit/widgets/PlainTextValidator.h"

#include <QContextMenuEvent>
#include <QFocusEvent>
#include <QHelpEvent>
#include <QPointer>

namespace KZ {

CLineEdit::CLineEdit(int id, QWidget* parent) : CEventWidgetT<QLineEdit>(parent), m_id(id)
{
    setStyle(kitStyle());
    setMaxLength(MAX_TEXT_LENGTH);
    setValidator(new CPlainTextValidator(this));
    resize(CLineEdit::sizeHint());
    setAttribute(Qt::WA_Resized, false);
    connect(this, &QLineEdit::returnPressed, this, &CLineEdit::commit);
    connect(this, &QLineEdit::textChanged, this, [this] {
        m_tracker.textChanged(text());
        showTextFromStart(this);
    });
    connect(this, &QLineEdit::textEdited, this, [this](const QString& text) {
        m_tracker.textEdited(text);
        deliverEvent(EVENT_TEXT_EDITED, m_id, 0, text, static_cast<QWidget*>(this));
    });
}

CLineEdit::~CLineEdit() = default;

void CLineEdit::commit()
{
    m_tracker.commit(text());
    deliverEvent(EVENT_TEXT_COMMITTED, m_id, 0, text(), static_cast<QWidget*>(this));
}

QSize CLineEdit::sizeHint() const
{
    return {CUiResource::getSize(QStringLiteral("gw_siz_kit_editor_width")),
            CUiResource::getSize(QStringLiteral("gw_siz_kit_editor_height"))};
}

QSize CLineEdit::minimumSizeHint() const
{
    return {2 * CUiResource::getSize(QStringLiteral("gw_siz_kit_editor_button_width")),
            CUiResource::getSize(QStringLiteral("gw_siz_kit_editor_height"))};
}

void CLineEdit::onUiResourceChanged()
{
    update();
}

bool CLineEdit::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip && toolTip().isEmpty() &&
        showCutText(this, *static_cast<QHelpEvent*>(event)))
        return true;
    return CEventWidgetT<QLineEdit>::event(event);
}

void CLineEdit::changeEvent(QEvent* event)
{
    CEventWidgetT<QLineEdit>::changeEvent(event);
    if (event->type() == QEvent::EnabledChange || event->type() == QEvent::ReadOnlyChange)
        showTextFromStart(this);
}

void CLineEdit::focusOutEvent(QFocusEvent* event)
{
    CEventWidgetT<QLineEdit>::focusOutEvent(event);
    if (!CEditTracker::endsEditing(event->reason()))
        return;
    const QPointer<CLineEdit> guard(this);
    if (m_tracker.isChanged(text()))
        commit();
    if (guard)
        deliverEvent(EVENT_FOCUS_LEFT, m_id, 0, text(), static_cast<QWidget*>(this));
}

void CLineEdit::contextMenuEvent(QContextMenuEvent* event)
{
    showEditorMenu(this, event->globalPos());
}

} // namespace KZ
