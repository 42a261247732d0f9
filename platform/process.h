// Other programs, started without a shell.
#pragma once
#include <string>
#include <string_view>
#include <vector>

/// Starts a program, found in the search path, with its arguments (the first is the program). The child gets the
/// environment and the three standard streams, and no other file of ours. With `wait` returns when it has ended,
/// whatever signals come meanwhile. False if it can't be started; then nothing runs.
bool RunProcess(const std::vector<std::string>& arguments, bool wait);

/// What a program gave that was called.
struct ProcessOutput {
    bool m_started = false;
    bool m_timedOut = false;  // it did not end in time, and was ended
    int m_status = -1;        // its exit status; -1 when a signal ended it
    std::string m_text;       // of its standard output, and of its standard error: a megabyte of each at most
    std::string m_errors;
};

/// Runs a program and waits for its end, so many milliseconds at most, for what it writes. It reads nothing.
ProcessOutput ReadProcess(const std::vector<std::string>& arguments, int milliseconds);

/// The words of a line: blanks and tabs part them outside of double quotes, which are taken away. A quote that isn't
/// closed reaches to the end.
std::vector<std::string> SplitArguments(std::string_view line);
