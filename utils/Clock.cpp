#include "utils/Clock.h"

#include <chrono>
#include <utility>

namespace utils {

namespace {

std::function<double()>& clockSource()
{
    static std::function<double()> source;
    return source;
}

} // namespace

double clock()
{
    if (const auto& source = clockSource())
        return source();
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(sinceStart).count();
}

void setClockSource(std::function<double()> source)
{
    clockSource() = std::move(source);
}

} // namespace utils
