#pragma once

#include "kit/widgets/Button.h"

namespace KZ {

/// A square button that shows one image and no text. Give it a tool tip: that is its accessible
/// name as well unless another is set.
class KZKIT_EXPORT CPushButton : public CButton
{
    Q_OBJECT

public:
    CPushButton(int id, int command, QWidget* parent);
    CPushButton(int id, QWidget* parent);

    /// Registry key of the image.
    void setImageKey(const QString& key);
    QString imageKey() const { return iconKey(); }

protected:
    Look look() const override;
    QString paddingKey() const override;
    bool event(QEvent* event) override;

private:
    QString m_toolTipName;
};

} // namespace KZ
