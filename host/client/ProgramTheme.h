#pragma once

#include "kit/resources/UiResourceChangeHandler.h"

namespace host {

/// Gives windows that are not the kit's (message boxes, file dialogs) the look of the kit's, in
/// whichever theme is current. One per application object.
class ProgramTheme : public KZ::CUiResourceChangeHandler
{
public:
    ProgramTheme();
    ~ProgramTheme() override;

    void onUiResourceChanged() override;

private:
    static void takeTheme();
};

} // namespace host
