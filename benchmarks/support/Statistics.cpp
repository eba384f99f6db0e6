#include "benchmarks/support/Statistics.h"

#include <algorithm>

namespace bench {

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    if (values.size() % 2 == 1)
        return values[middle];
    return (values[middle - 1] + values[middle]) / 2;
}

Comparison alternate(int rounds, const std::function<double()>& ours,
                     const std::function<double()>& other)
{
    ours();
    other();
    std::vector<double> oursValues;
    std::vector<double> otherValues;
    for (int round = 0; round < rounds; ++round) {
        oursValues.push_back(ours());
        otherValues.push_back(other());
    }
    return {median(oursValues), median(otherValues)};
}

} // namespace bench
