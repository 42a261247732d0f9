// What a command of a script is. Families of commands stand in files of their own (script_*.cpp).
#pragma once
#include <span>
#include <string>
#include <vector>

class Script;

using ScriptWords = std::vector<std::string>;  // of one line; the command's name comes first

/// One command: how it reads, what it does. `least` and `most` count the words behind the name; most -1 is any number.
/// `run` may throw ScriptFailure and DataFailure, with the net as it was.
struct ScriptCommand {
    const char* name;
    const char* arguments;
    int least, most;
    void (*run)(Script& script, const ScriptWords& words);
    const char* help;
    bool edits = false;  // changes lines of the net, so that plates have to follow
};

// The families, each in the order of the help.
std::span<const ScriptCommand> PartCommands();   // texts, graphics, riders; what is shown and printed
std::span<const ScriptCommand> PlateCommands();
std::span<const ScriptCommand> FieldCommands();
std::span<const ScriptCommand> GridCommands();   // the background grid
std::span<const ScriptCommand> DrawingCommands();  // DXF out
std::span<const ScriptCommand> ModelCommands();  // saving and opening
