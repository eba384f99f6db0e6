#pragma once

#include <QDate>
#include <QString>

namespace host {

/// What the account list says about the days of a grant, beside the dates themselves.
struct ExpiryMark
{
    /// A grant is near its end when at most this many days follow today until its last day.
    static constexpr int nearDays = 3;

    /// Empty when there is nothing to say.
    QString text;
    /// Icon key in the resource registry, empty with an empty text.
    QString iconKey;
    /// Colour key for the text, of static storage; null with an empty text.
    const char* colorKey = nullptr;
    /// Whether the grant ends within `nearDays` days.
    bool isNear = false;

    /// The mark on `today` of a grant from `first` to `last`, both days included.
    static ExpiryMark forGrant(const QDate& first, const QDate& last, const QDate& today);
};

} // namespace host
