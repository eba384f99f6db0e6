#include "kit/table/TableFilterBar.h"

#include "kit/resources/KitStyle.h"
#include "kit/resources/UiResource.h"
#include "kit/widgets/EditorMenu.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QToolButton>

namespace KZ {

CTableFilterBar::CTableFilterBar(QWidget* parent)
    : QWidget(parent), m_edit(new QLineEdit(this)), m_count(new QLabel(this)),
      m_close(new QToolButton(this))
{
    m_edit->setObjectName(QStringLiteral("halden_table_filter"));
    m_edit->setPlaceholderText(tr("输入以筛选"));
    m_edit->setAccessibleName(tr("筛选"));
    m_edit->setClearButtonEnabled(false);
    m_edit->installEventFilter(this);
    m_count->setObjectName(QStringLiteral("halden_table_filter_count"));
    m_count->setTextFormat(Qt::PlainText);
    m_close->setAutoRaise(true);
    m_close->setFocusPolicy(Qt::NoFocus);
    m_close->setAccessibleName(tr("关闭筛选"));
    m_close->setToolTip(tr("关闭筛选 (Esc)"));
    auto* const layout = new QHBoxLayout(this);
    layout->addWidget(m_edit, 1);
    layout->addWidget(m_count);
    layout->addWidget(m_close);
    applyKitStyle(this);
    updateResources();
    m_edit->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_edit, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& at) { showEditorMenu(m_edit, m_edit->mapToGlobal(at)); });
    connect(m_edit, &QLineEdit::textChanged, this, &CTableFilterBar::textChanged);
    connect(m_close, &QToolButton::clicked, this, &CTableFilterBar::closed);
}

void CTableFilterBar::updateResources()
{
    const int space = CUiResource::getSize(QStringLiteral("gw_siz_kit_list_space"));
    layout()->setContentsMargins(0, space / 2, 0, 0);
    layout()->setSpacing(space);
    m_close->setIcon(CUiResource::getIcon(QStringLiteral("gw_img_kit_close")));
}

void CTableFilterBar::setCount(int shown, int all)
{
    const QLocale locale(QLocale::Chinese, QLocale::China);
    m_count->setText(locale.toString(shown) + QStringLiteral(" / ") + locale.toString(all));
}

bool CTableFilterBar::eventFilter(QObject* object, QEvent* event)
{
    const bool isOverride = event->type() == QEvent::ShortcutOverride;
    if (!isOverride && event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(object, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    switch (key) {
    case Qt::Key_Escape:
        event->accept();
        if (!isOverride)
            Q_EMIT closed();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Down:
    case Qt::Key_Up:
    case Qt::Key_PageDown:
    case Qt::Key_PageUp:
        if (isOverride)
            return false;
        Q_EMIT left(key);
        return true;
    default:
        return false;
    }
}

} // namespace KZ
