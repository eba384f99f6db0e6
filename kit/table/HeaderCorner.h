#pragma once

#include <QWidget>

class QHeaderView;

namespace KZ {

/// Continues a table's header over its vertical scroll bar, which so stands beside the rows alone.
class CHeaderCorner : public QWidget
{
    Q_OBJECT

public:
    CHeaderCorner(const QHeaderView* header, QWidget* parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const QHeaderView* const m_header;
};

} // namespace KZ
