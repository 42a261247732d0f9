#include "platform/process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace {

/// Those that nobody waits for. Each start takes the ended ones off the system's list.
std::vector<pid_t>& Loose() {
    static std::vector<pid_t> loose;
    return loose;
}

void Collect() {
    std::erase_if(Loose(), [](pid_t pid) {
        const pid_t ended = ::waitpid(pid, nullptr, WNOHANG);
        return ended == pid || (ended < 0 && errno == ECHILD);
    });
}

bool Spawn(char* const* arguments, bool wait, pid_t& pid) {
    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
    if (posix_spawn_file_actions_init(&files) != 0) return false;
    if (posix_spawnattr_init(&attributes) != 0) {
        posix_spawn_file_actions_destroy(&files);
        return false;
    }
#if defined(__GLIBC__) && (__GLIBC__ > 2 || __GLIBC_MINOR__ >= 34)
    posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
#endif
    // A signal that this program blocks or ignores is the child's own affair.
    sigset_t none, all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    short flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
    if (!wait) {  // a program of the user's, that a break at our terminal is not meant for
        flags |= POSIX_SPAWN_SETSID;
        posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    }
    posix_spawnattr_setflags(&attributes, flags);
    const int failed = ::posix_spawnp(&pid, arguments[0], &files, &attributes, arguments, environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return failed == 0;
}

}  // namespace

bool RunProcess(const std::vector<std::string>& arguments, bool wait) {
    Collect();
    if (arguments.empty() || arguments[0].empty()) return false;
    std::vector<char*> words;
    for (const std::string& word : arguments) words.push_back(const_cast<char*>(word.c_str()));  // not written to
    words.push_back(nullptr);
    pid_t pid = 0;
    if (!Spawn(words.data(), wait, pid)) return false;
    if (!wait) {
        Loose().push_back(pid);
        return true;
    }
    while (::waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
    }
    return true;
}

std::vector<std::string> SplitArguments(std::string_view line) {
    std::vector<std::string> words;
    bool quoted = false, open = false;  // a word has begun, be it empty
    for (const char c : line) {
        if (c == '"') {
            quoted = !quoted;
            if (!open) words.emplace_back();
            open = true;
        } else if (!quoted && (c == ' ' || c == '\t')) {
            open = false;
        } else {
            if (!open) words.emplace_back();
            open = true;
            words.back() += c;
        }
    }
    return words;
}
