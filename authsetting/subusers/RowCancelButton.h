#pragma once

#include "kit/widgets/SmallNormalButton.h"

namespace GW {

/// The button "取消授权" of a table row, which the table shows and hides with its cell and the page
/// offers only while the row's account is granted: it is seen when both want it.
class CRowCancelButton : public KZ::CSmallNormalButton
{
    Q_OBJECT

public:
    /// Added to the row's identifier it makes the identifier of the button.
    static constexpr int firstId = 100000;

    CRowCancelButton(int row, QWidget* parent);

    void setOffered(bool offered);
    void setVisible(bool visible) override;

private:
    bool m_offered = false;
    bool m_wanted = false;
};

} // namespace GW
