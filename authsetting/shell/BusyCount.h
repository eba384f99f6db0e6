#pragma once

#include "kit/widgets/SimpleTextWidget.h"

class QProgressBar;

namespace GW {

/// How much of a large batch is answered, above the right end of the busy bar. Hidden until there
/// is something to count. It also tells the count as the bar's accessible description.
class CBusyCount : public KZ::CSimpleTextWidget
{
public:
    /// `text` and `bar` outlive it; both are siblings.
    CBusyCount(const QWidget* text, QProgressBar* bar, QWidget* parent);

    void showCount(int answered, int total);
    void clear();
    /// Stands at the bar's right end, or behind a text that reaches so far.
    void place();

private:
    const QWidget* m_text;
    QProgressBar* m_bar;
};

} // namespace GW
