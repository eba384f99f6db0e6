#pragma once

#include "kit/widgets/Button.h"

namespace KZ {

/// A button of the usual height. With an icon it is the main action of its page and drawn so.
class KZKIT_EXPORT CMediumNormalButton : public CButton
{
    Q_OBJECT

public:
    CMediumNormalButton(int id, int command, QWidget* parent);
    CMediumNormalButton(int id, QWidget* parent);

protected:
    Look look() const override;
};

} // namespace KZ
