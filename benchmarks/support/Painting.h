#pragma once

#include <QWidget>

#include <functional>

namespace bench {

/// Runs `action` and turns the event loop until `painted` has been painted afterwards and nothing
/// is left to do. Returns the milliseconds from the call to that moment.
double millisecondsUntilPainted(QWidget* painted, const std::function<void()>& action);

/// Turns the event loop for long enough that nothing is left to do.
void settle();

} // namespace bench
