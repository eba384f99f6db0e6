#include "kit/table/HeaderCorner.h"

#include <QHeaderView>
#include <QPainter>
#include <QStyleOptionHeader>

#include <algorithm>

namespace KZ {

CHeaderCorner::CHeaderCorner(const QHeaderView* header, QWidget* parent)
    : QWidget(parent), m_header(header)
{
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    connect(header, &QHeaderView::geometriesChanged, this, &QWidget::updateGeometry);
}

QSize CHeaderCorner::sizeHint() const
{
    const int height = std::clamp(m_header->sizeHint().height(), m_header->minimumHeight(),
                                  m_header->maximumHeight());
    return {0, m_header->isHidden() ? 0 : height};
}

void CHeaderCorner::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    QStyleOptionHeader option;
    option.initFrom(this);
    style()->drawControl(QStyle::CE_HeaderEmptyArea, &option, &painter, this);
}

} // namespace KZ
