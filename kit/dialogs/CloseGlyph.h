#pragma once

#include "kit/widgets/PushButton.h"

namespace KZ {

/// The cross at the right end of a dialog's title bar. It takes no focus: Esc does the same.
class CCloseGlyph : public CPushButton
{
    Q_OBJECT

public:
    CCloseGlyph(int id, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace KZ
