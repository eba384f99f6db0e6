#pragma once

#include "kit/dialogs/CustomDialog.h"

namespace KZ {

/// The dialog of the client's ordinary tasks: of fixed place relative to its parent window, over
/// whose middle it appears the first time, and kept inside the screen.
class KZKIT_EXPORT CCommonDialog : public CCustomDialog
{
    Q_OBJECT

public:
    explicit CCommonDialog(QWidget* parent);

protected:
    void resizeEvent(QResizeEvent* event) override;
};

} // namespace KZ
