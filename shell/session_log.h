// The session log: what was said, line by line, in a file.
#pragma once
#include <cstdio>

#include "platform/string.h"

/// Switches the log on (1) or off. On it has to be before a frame is built; off, the lines of a frame that stands are left
/// out.
void WriteQeTvoSessionLog(int on);
int IsSessionLogOn();

/// "QeSession.log" under the work path, appended to in GBK, each line in writing as soon as it is told. A file that can't
/// be opened or written is nobody's trouble: the program goes on without.
class CSessionLog {
public:
    CSessionLog() = default;
    CSessionLog(const CSessionLog&) = delete;
    CSessionLog& operator=(const CSessionLog&) = delete;
    ~CSessionLog();  // writes the line of the end

    void Open();  // makes the folder, writes the line of the start
    bool IsOpen() const { return m_file != nullptr; }
    /// "[time] text". Line breaks become blanks; an echo that leaves no trace (one with "qe_inter_cmd_") is left out.
    void Write(CString text);

private:
    void Put(const CString& line);

    std::FILE* m_file = nullptr;
};
