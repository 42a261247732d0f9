// The two ways in which a command of tvo fails.
#pragma once
#include <stdexcept>

/// How a run of the program ends.
enum ExitStatus { kDone = 0, kDataUnusable = 1, kWrongUsage = 2 };

/// The data could not be used. The message names the file, line or byte, and the reason.
struct DataFailure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The caller asked for something that makes no sense.
struct UsageFailure : std::runtime_error {
    using std::runtime_error::runtime_error;
};
