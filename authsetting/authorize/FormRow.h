#pragma once

#include "kit/widgets/WidgetList.h"

#include <QString>

namespace KZ {
class CSimpleTextWidget;
}

namespace GW {

/// One line of a form: editors with their captions before them, from the left, in the height of
/// form rows. The caption is the accessible name of its editor. All lengths are in pixels.
class CFormRow : public KZ::CWidgetList
{
    Q_OBJECT

public:
    /// `captionGap` stands between a caption and its editor, `fieldGap` before the next caption.
    CFormRow(int captionGap, int fieldGap, QWidget* parent);
    /// With the registry's distance between neighbours for both.
    explicit CFormRow(QWidget* parent);

    /// Appends a caption and an editor of the given size, or of this width in its own height.
    KZ::CSimpleTextWidget* addField(const QString& caption, QWidget* editor, const QSize& size);
    KZ::CSimpleTextWidget* addField(const QString& caption, QWidget* editor, int width);

    /// Appends a text that says something about the field before it.
    KZ::CSimpleTextWidget* addRemark(const QString& text, int gap);

private:
    const int m_captionGap;
    const int m_fieldGap;
    bool m_hasField = false;
};

} // namespace GW
