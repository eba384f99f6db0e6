#pragma once

#include "kit/widgets/BaseWidget.h"

namespace KZ {

/// One line of plain text, never interpreted as markup. It always has exactly the size of its
/// text; a text wider than its limit, or than the room it is given, ends in an ellipsis and shows
/// in full as tool tip.
class KZKIT_EXPORT CSimpleTextWidget : public CBaseWidget
{
    Q_OBJECT

public:
    CSimpleTextWidget(const QString& text, QWidget* parent);

    /// `maxWidth` limits the width in pixels.
    void setText(const QString& text, int maxWidth = 100000);
    QString text() const { return m_text; }

    /// Registry key of the text's colour; empty is the colour of the parent's texts.
    void setTextColorKey(const QString& key);
    QString textColorKey() const { return m_colorKey; }

    /// Registry key of the font; empty is the parent's font.
    void setTextFontKey(const QString& key);

    /// Makes this text the accessible name of `target`, now and after each setText(). Not owned.
    void setAccessibleTarget(QWidget* target);
    QWidget* accessibleTarget() const { return m_target; }

    /// What is drawn at the present width: the text or its elided form.
    QString shownText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    void onUiResourceChanged() override;

protected:
    void changeEvent(QEvent* event) override;
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void takeTextSize();

    QString m_text;
    QString m_colorKey;
    QString m_fontKey;
    int m_maxWidth = 100000;
    QPointer<QWidget> m_target;
};

} // namespace KZ
