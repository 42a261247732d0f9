// The one conversion of a float or double to an integer.
#pragma once
#include <cstdint>
#include <limits>

/// Truncates towards zero. A value outside [low, high] becomes the nearer bound, a NaN 0.
constexpr int SaturatedInt(double v, int low = std::numeric_limits<int>::min(),
                           int high = std::numeric_limits<int>::max()) {
    if (v != v) return 0;
    if (v <= low) return low;
    if (v >= high) return high;
    return static_cast<int>(v);
}

/// The same for 64 bits.
constexpr std::int64_t SaturatedInt64(double v) {
    constexpr double kLimit = 9223372036854775808.0;  // 2^63
    if (v != v) return 0;
    if (v <= -kLimit) return std::numeric_limits<std::int64_t>::min();
    if (v >= kLimit) return std::numeric_limits<std::int64_t>::max();
    return static_cast<std::int64_t>(v);
}
