#pragma once

#include "kit/widgets/SimpleTextWidget.h"

namespace KZ {
class CBusyBar;
}

namespace GW {

/// How much of a large batch is answered, above the right end of the busy bar. Hidden until there
/// is something to count. It also tells the count to the bar, for assistive tools.
class CBusyCount : public KZ::CSimpleTextWidget
{
public:
    /// `text` and `bar` outlive it; both are siblings.
    CBusyCount(const QWidget* text, KZ::CBusyBar* bar, QWidget* parent);

    void showCount(int answered, int total);
    void clear();
    /// Stands at the bar's right end, or behind a text that reaches so far.
    void place();

private:
    const QWidget* m_text;
    KZ::CBusyBar* m_bar;
};

} // namespace GW
