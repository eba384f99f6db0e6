#include "kit/dialogs/CommonDialog.h"

namespace KZ {

CCommonDialog::CCommonDialog(QWidget* parent) : CCustomDialog(parent)
{
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
}

} // namespace KZ
