#pragma once

#include "authsetting/services/AuthLimit.h"

#include <QString>

namespace KZ {
class CSoftCalendarLineEdit;
}

namespace GW {

/// The days of a grant as two editors show them, both days included. The editors belong to a form
/// and must outlive this. GUI thread only.
class CGrantDays
{
public:
    CGrantDays(KZ::CSoftCalendarLineEdit* first, KZ::CSoftCalendarLineEdit* last);

    /// Lets the user enter no day before the client's today.
    void startToday();
    /// Shows a week from the client's today.
    void propose();
    /// Shows a grant's days, also past ones.
    void show(const CAuthLimit& limit);

    /// The shown days as the conditions of a grant without a margin ratio.
    CAuthLimit limit() const;
    /// 1 when the range begins and ends on the same day, below 1 when it is inverted.
    qint64 count() const;
    /// What the user is told about a range of one day or an inverted one; empty for any other.
    QString hint() const;

    /// What propose() shows.
    static CAuthLimit proposal();

private:
    KZ::CSoftCalendarLineEdit* m_first;
    KZ::CSoftCalendarLineEdit* m_last;
};

} // namespace GW
