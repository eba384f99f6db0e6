#pragma once

#include "kit/KitExport.h"
#include "kit/resources/UiResourceChangeHandler.h"

#include <QMenu>

namespace KZ {

/// A pop-up menu in the kit's style and theme, whatever the program's.
class KZKIT_EXPORT CMenu : public QMenu, public CUiResourceChangeHandler
{
    Q_OBJECT

public:
    explicit CMenu(QWidget* parent);
    ~CMenu() override;

    void onUiResourceChanged() override;
};

} // namespace KZ
