#pragma once

#include "kit/dialogs/CustomDialog.h"

namespace KZ {

/// Base of the dialogs for the client's ordinary tasks: without a help button, and of a size that
/// follows its content until somebody fixes it.
class KZKIT_EXPORT CCommonDialog : public CCustomDialog
{
    Q_OBJECT

public:
    explicit CCommonDialog(QWidget* parent);
};

} // namespace KZ
