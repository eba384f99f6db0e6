#pragma once

#include <QWidgetItem>

namespace KZ {

/// Layout item of a widget that keeps its length along a list, and across it either keeps its
/// size, centred or at the leading edge, or fills the list.
class CKeptSizeItem : public QWidgetItem
{
public:
    /// `kept` is the size to keep; without a valid one the widget's hint holds at every layout.
    CKeptSizeItem(QWidget* widget, Qt::Orientation along, bool fillsAcross, const QSize& kept);

    void setKept(const QSize& kept) { m_kept = kept; }

    QSize sizeHint() const override;
    QSize minimumSize() const override;
    QSize maximumSize() const override;
    Qt::Orientations expandingDirections() const override;
    bool hasHeightForWidth() const override;
    void setGeometry(const QRect& rect) override;

private:
    const Qt::Orientation m_along;
    const bool m_fillsAcross;
    QSize m_kept;
};

} // namespace KZ
