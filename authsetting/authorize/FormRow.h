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
    /// The same with the key of a size between the fields.
    CFormRow(int captionGap, const QString& fieldGapKey, QWidget* parent);

    /// Appends a caption and an editor, whose size the registry has under these keys; without the
    /// second one the editor has its own height.
    KZ::CSimpleTextWidget* addField(const QString& caption, QWidget* editor,
                                    const QString& widthKey, const QString& heightKey = QString());

    /// Appends a text that says something about the field before it.
    KZ::CSimpleTextWidget* addRemark(const QString& text, int gap);

    void onUiResourceChanged() override;

private:
    void addFieldGap();
    void takeHeight();

    const int m_captionGap;
    const int m_fieldGap = 0;
    const QString m_fieldGapKey;
    bool m_hasField = false;
};

} // namespace GW
