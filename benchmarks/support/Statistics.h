#pragma once

#include <functional>
#include <vector>

namespace bench {

/// Middle value; the mean of the two middle ones for an even count. `values` is not empty.
double median(std::vector<double> values);

/// Both sides of a comparison and their ratio, each the median of its rounds.
struct Comparison
{
    double ours = 0;
    double other = 0;
    double ratio() const { return ours / other; }
};

/// Measures the two in turn, ours first, once unmeasured and then `rounds` times, so that both meet
/// the same machine. Each function returns its own figure.
Comparison alternate(int rounds, const std::function<double()>& ours,
                     const std::function<double()>& other);

} // namespace bench
