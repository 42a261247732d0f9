#include "shell/session_log.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "model/dates.h"
#include "model/paths.h"
#include "platform/gbk.h"

namespace {

int g_bSessionLog = 0;

/// To append to; null for what is no plain file: a pipe would hold the program up.
std::FILE* OpenRegular(const char* path) {
    const int file = ::open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666);
    struct stat about {};
    if (file < 0 || ::fstat(file, &about) != 0 || !S_ISREG(about.st_mode)) {
        if (file >= 0) ::close(file);
        return nullptr;
    }
    return ::fdopen(file, "a");
}

}  // namespace

void WriteQeTvoSessionLog(int on) { g_bSessionLog = on; }
int IsSessionLogOn() { return g_bSessionLog; }

void CSessionLog::Open() {
    if (m_file) return;
    force_directory(G_strWorkPath);
    CString path = G_strWorkPath + "QeSession.log";
    path.Replace("\\", "/");  // as the folder has been made
    m_file = OpenRegular(path);
    Put("New session started at " + GetCurTime2() + "\n");
}

CSessionLog::~CSessionLog() {
    if (!m_file) return;
    Put("Session ended at " + GetCurTime2() + "\n");
    std::fclose(m_file);
}

void CSessionLog::Write(CString text) {
    if (!m_file || !g_bSessionLog || text.Find("qe_inter_cmd_") >= 0) return;
    for (const char* end : {"\r\n", "\n", "\r"}) text.Replace(end, " ");
    Put("[" + GetCurTime2() + "] " + text + "\n");
}

void CSessionLog::Put(const CString& line) {
    if (!m_file) return;
    const std::string bytes = Utf8ToGbk(line.View());
    std::fwrite(bytes.data(), 1, bytes.size(), m_file);
    std::fflush(m_file);
}
