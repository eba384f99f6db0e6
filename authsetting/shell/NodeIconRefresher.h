#pragma once

#include "kit/resources/UiResourceChangeHandler.h"

class QTreeWidget;

namespace GW {

/// Gives every CAuthNavigateNode of a tree its icon anew when the theme changes. The tree owns it.
class CNodeIconRefresher : public KZ::CUiResourceChangeHandler
{
public:
    explicit CNodeIconRefresher(QTreeWidget* tree);

    void onUiResourceChanged() override;

private:
    QTreeWidget* m_tree;
};

} // namespace GW
