#pragma once

#include <QProxyStyle>

class QStyleOptionHeaderV2;

namespace KZ {

/// Fusion with flat, dense parts in the registry's colours. The parts themselves are drawn by
/// CControlPainter and CViewPainter; this class knows which part is whose and all measures.
class CKitProxyStyle : public QProxyStyle
{
    Q_OBJECT

public:
    CKitProxyStyle();

    using QProxyStyle::polish;
    void polish(QWidget* widget) override;

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                         SubControl subControl, const QWidget* widget) const override;
    QRect subElementRect(SubElement element, const QStyleOption* option,
                         const QWidget* widget) const override;
    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option,
                       const QWidget* widget) const override;

private:
    void drawHeader(const QStyleOptionHeaderV2& header, QPainter* painter,
                    const QWidget* widget) const;
};

} // namespace KZ
