#pragma once

#include "kit/widgets/Button.h"

namespace KZ {

/// A button of the usual height. One with an icon, or that is told so, is the main action of its
/// page or dialog and drawn as that.
class KZKIT_EXPORT CMediumNormalButton : public CButton
{
    Q_OBJECT

public:
    CMediumNormalButton(int id, int command, QWidget* parent);
    CMediumNormalButton(int id, QWidget* parent);

    void setPrimary(bool primary);

protected:
    Look look() const override;

private:
    bool m_primary = false;
};

} // namespace KZ
