#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

namespace Bench {

/// How long @p work takes, in seconds.
template <typename Work>
double seconds(const Work& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The one in the middle of @p values, of which there must be some.
inline double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace Bench
