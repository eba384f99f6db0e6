#pragma once

#include "kit/widgets/Button.h"

namespace KZ {

/// A low button for table rows and tool bars.
class KZKIT_EXPORT CSmallNormalButton : public CButton
{
    Q_OBJECT

public:
    CSmallNormalButton(int id, int command, QWidget* parent);
    CSmallNormalButton(int id, QWidget* parent);

protected:
    QString heightKey() const override;
    QString paddingKey() const override;
};

} // namespace KZ
