// Reads a script line by line, from a file or the standard input.
#pragma once
#include <functional>
#include <string>
#include <string_view>

struct ScriptSource {
    std::string file = "-";  // - is the standard input
    bool keepGoing = false;  // go on after a bad command
};

/// Hands each line to `run`, and tells failures on the error stream with their lines. The exit status. Throws DataFailure
/// when the script can't be read.
int ReadScript(const ScriptSource& source, const std::function<void(std::string_view)>& run);
