#pragma once

#include <QString>

namespace monkey {

/// Collects what Qt warns of in place of printing it, in the whole program.
class Warnings
{
public:
    static void collect();
    /// The first warning since the last call, empty without one.
    static QString take();
};

} // namespace monkey
