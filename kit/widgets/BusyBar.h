#pragma once

#include "kit/KitExport.h"

#include <QProgressBar>

namespace KZ {

/// A bar that shows that something is under way, not how far it is. Assistive tools, for which the
/// movement says nothing, learn the count where there is one. GUI thread only.
class KZKIT_EXPORT CBusyBar : public QProgressBar
{
    Q_OBJECT

public:
    explicit CBusyBar(QWidget* parent);

    /// `done` of `total` steps are behind; a total of 0 forgets the count.
    void setCount(int done, int total);
    int done() const { return m_done; }
    int total() const { return m_total; }
    /// The count as it is read to the user, such as "1,200 / 3,000"; empty without one.
    QString countText() const;

private:
    int m_done = 0;
    int m_total = 0;
};

} // namespace KZ
