// The interpreter behind `tvo run`: a net edited by commands, one a line.
#pragma once
#include <iosfwd>
#include <string>
#include <string_view>

#include "host/host_data_base.h"

/// One net and the commands on it. Results go to the stream as JSON, one object a line.
class Script {
public:
    explicit Script(std::ostream& out) : m_out(out) {}

    /// Does what one line says; a line that is blank or a comment does nothing. Throws ScriptFailure when the line
    /// makes no sense or can't be done; the net is then as before the line.
    void Run(std::string_view line);

    /// The commands with their arguments, for people.
    static std::string Help();

    CTvoHostDataBase m_db;

    std::ostream& m_out;  // borrowed
};
