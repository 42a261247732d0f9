// Other programs, started without a shell.
#pragma once
#include <string>
#include <string_view>
#include <vector>

/// Starts a program, found in the search path, with its arguments (the first is the program). The child gets the
/// environment and the three standard streams, and no other file of ours. With `wait` returns when it has ended,
/// whatever signals come meanwhile. False if it can't be started; then nothing runs.
bool RunProcess(const std::vector<std::string>& arguments, bool wait);

/// The words of a line: blanks and tabs part them outside of double quotes, which are taken away. A quote that isn't
/// closed reaches to the end.
std::vector<std::string> SplitArguments(std::string_view line);
