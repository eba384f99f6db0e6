#pragma once

#include <QDate>
#include <QString>

namespace KZ {
class COddEvenRowTable;
}

namespace GW {

/// Marks the grants in a table that end within a few days of the client's today, beside the fixed
/// texts: with an icon and, in the tool tip, the days that are left. Made anew for every filling of
/// a table, because the day may have changed. GUI thread only.
class CExpiryHints
{
public:
    /// A grant is near its end when at most this many days follow today until its last day.
    static constexpr int nearDays = 3;

    CExpiryHints();

    /// How many days are left of a grant with this last day (seconds as in CAuthLimit); empty when
    /// it is over or not near its end.
    QString text(int lastDay) const;

    /// Marks a cell that tells the state of such a grant, or takes the mark of an earlier one away.
    void mark(KZ::COddEvenRowTable* table, int row, int column, int lastDay) const;
    static void unmark(KZ::COddEvenRowTable* table, int row, int column);

private:
    QDate m_today;
    /// The first second after the days that are near.
    int m_far;
};

} // namespace GW
