#include "kit/table/CellEditor.h"

#include "kit/resources/KitStyle.h"
#include "kit/resources/UiResource.h"
#include "kit/widgets/EditorMenu.h"

#include <QPainter>

namespace KZ {

CCellEditor::CCellEditor(const QModelIndex& index, const QString& text, QWidget* parent)
    : QLineEdit(text, parent), m_index(index), m_initialText(text)
{
    setStyle(kitStyle());
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& at) { showEditorMenu(this, mapToGlobal(at)); });
    connect(this, &QLineEdit::textEdited, this, [this] { setRefused(false); });
}

void CCellEditor::setRefused(bool refused)
{
    if (m_refused == refused)
        return;
    m_refused = refused;
    const QString hint = refused ? tr("内容无效，请修改后重试，按 Esc 放弃") : QString();
    setToolTip(hint);
    setAccessibleDescription(hint);
    update();
}

void CCellEditor::paintEvent(QPaintEvent* event)
{
    QLineEdit::paintEvent(event);
    if (!m_refused)
        return;
    const int width = CUiResource::getSize(QStringLiteral("gw_siz_kit_focus_ring"));
    QPainter painter(this);
    QPen pen(CUiResource::getColor(QStringLiteral("clr_danger")), width);
    pen.setJoinStyle(Qt::MiterJoin);
    painter.setPen(pen);
    const qreal inset = width / 2.0;
    painter.drawRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset));
}

} // namespace KZ
