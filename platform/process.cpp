#include "platform/process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
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

/// Where a child's streams go: the standard ones of this program, or into pipes.
struct Streams {
    int out = -1, errors = -1;  // ends to write to; -1: this program's own
};

bool Spawn(char* const* arguments, bool wait, pid_t& pid, const Streams& streams = {}) {
    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
    if (posix_spawn_file_actions_init(&files) != 0) return false;
    if (posix_spawnattr_init(&attributes) != 0) {
        posix_spawn_file_actions_destroy(&files);
        return false;
    }
    if (streams.out >= 0) posix_spawn_file_actions_adddup2(&files, streams.out, STDOUT_FILENO);
    if (streams.errors >= 0) posix_spawn_file_actions_adddup2(&files, streams.errors, STDERR_FILENO);
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
    // A program of the user's: a break at our terminal is not meant for it.
    if (!wait) flags |= POSIX_SPAWN_SETSID;
    if (!wait || streams.out >= 0)
        posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawnattr_setflags(&attributes, flags);
    const int failed = ::posix_spawnp(&pid, arguments[0], &files, &attributes, arguments, environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return failed == 0;
}

std::vector<char*> Words(const std::vector<std::string>& arguments) {
    std::vector<char*> words;
    for (const std::string& word : arguments)
        words.push_back(const_cast<char*>(word.c_str()));  // not written to
    words.push_back(nullptr);
    return words;
}

/// A pipe whose ends close with it.
struct Pipe {
    int m_read = -1, m_write = -1;
    Pipe() {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) == 0) m_read = ends[0], m_write = ends[1];
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() {
        Close(m_read);
        Close(m_write);
    }
    static void Close(int& end) {
        if (end >= 0) ::close(end);
        end = -1;
    }
};

/// Takes what is there; closes the end when nothing more will come.
void ReadSome(int& end, std::string& text) {
    constexpr std::size_t kMost = 1 << 20;
    char bytes[4096];
    const ssize_t count = ::read(end, bytes, sizeof bytes);
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) return;
    if (count <= 0) return Pipe::Close(end);
    text.append(bytes, std::min(static_cast<std::size_t>(count), kMost - std::min(kMost, text.size())));
}

}  // namespace

bool RunProcess(const std::vector<std::string>& arguments, bool wait) {
    Collect();
    if (arguments.empty() || arguments[0].empty()) return false;
    pid_t pid = 0;
    if (!Spawn(Words(arguments).data(), wait, pid)) return false;
    if (!wait) {
        Loose().push_back(pid);
        return true;
    }
    while (::waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
    }
    return true;
}

ProcessOutput ReadProcess(const std::vector<std::string>& arguments, int milliseconds) {
    using Clock = std::chrono::steady_clock;
    Collect();
    ProcessOutput output;
    if (arguments.empty() || arguments[0].empty()) return output;
    Pipe out, errors;
    pid_t pid = 0;
    if (out.m_read < 0 || errors.m_read < 0) return output;
    if (!Spawn(Words(arguments).data(), true, pid, {out.m_write, errors.m_write})) return output;
    output.m_started = true;
    Pipe::Close(out.m_write);
    Pipe::Close(errors.m_write);
    const auto end = Clock::now() + std::chrono::milliseconds(milliseconds);
    int status = 0;
    for (bool ended = false; !ended;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        if (left <= 0) {
            output.m_timedOut = true;
            ::kill(pid, SIGKILL);
            while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
            }
            break;
        }
        // Descriptors of -1 are passed over. With both at their end the program itself is looked at now and
        // then.
        pollfd ends[2] = {{out.m_read, POLLIN, 0}, {errors.m_read, POLLIN, 0}};
        const bool open = out.m_read >= 0 || errors.m_read >= 0;
        ::poll(ends, 2, static_cast<int>(std::min<long long>(left, open ? 1000 : 5)));
        if (ends[0].revents) ReadSome(out.m_read, output.m_text);
        if (ends[1].revents) ReadSome(errors.m_read, output.m_errors);
        ended = !open && ::waitpid(pid, &status, WNOHANG) != 0;
    }
    output.m_status = !output.m_timedOut && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return output;
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
