#pragma once

#include <QString>

namespace monkey {

/// Something that the dialog must not do.
struct Failure
{
    /// One word for all failures of the same sort; shortening a script keeps it.
    QString sort;
    QString text;

    bool isEmpty() const { return sort.isEmpty(); }
};

} // namespace monkey
