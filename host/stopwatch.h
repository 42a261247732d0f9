// How long a stage of work took.
#pragma once
#include <chrono>

/// Runs from its making.
class Stopwatch {
public:
    /// Seconds since the making or the last lap.
    double Lap() {
        const auto now = std::chrono::steady_clock::now();
        const double seconds = std::chrono::duration<double>(now - m_start).count();
        m_start = now;
        return seconds;
    }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};
