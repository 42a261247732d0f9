// Loaded before a program (LD_PRELOAD), lets it die by SIGKILL at an operation on the files of a folder.
//   TVO_KILL_FOLDER  the folder, with a slash at its end; operations elsewhere don't count
//   TVO_KILL_LOG     a file that gets a line for each operation that was done: "write NAME", "rename NAME TO"
//   ... TVO_KILL_ON      only operations of which the line begins so count; unset: all TVO_KILL_AT      which
//   of them is the last, from 1; it isn't done TVO_KILL_HOW     half: half of it is done, if it is a write
//                    power: with it goes what was written and not synced
#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cstdarg>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

template <class Function>
Function* Real(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

std::string Setting(const char* name) {
    const char* const value = std::getenv(name);
    return value ? value : "";
}

using Open = int(const char*, int, ...);

struct stat StatusOf(int file) {
    struct stat status {};
    (void)::fstat(file, &status);
    return status;
}

/// A file that was opened to be written.
struct Written {
    int file = -1;     // one of our own, so that it outlives the program's, and its lock doesn't
    off_t synced = 0;  // how much of it a sync has confirmed
};
std::vector<Written>& AllWritten() {
    static std::vector<Written> all;
    return all;
}
Written* WrittenLike(int file) {
    const auto status = StatusOf(file);
    for (Written& written : AllWritten())
        if (const auto own = StatusOf(written.file);
            own.st_ino == status.st_ino && own.st_dev == status.st_dev)
            return &written;
    return nullptr;
}

std::atomic<int> g_count = 0;

/// Below the folder; empty for a file elsewhere.
std::string NameIn(const std::string& path) {
    static const std::string folder = Setting("TVO_KILL_FOLDER");
    return !folder.empty() && path.starts_with(folder) ? path.substr(folder.size()) : "";
}

std::string NameOf(int file) {
    char path[4096];
    const ssize_t n = ::readlink(("/proc/self/fd/" + std::to_string(file)).c_str(), path, sizeof path);
    return n > 0 ? NameIn(std::string(path, static_cast<std::size_t>(n))) : "";
}

void Log(const std::string& line) {
    static const int log =
        Real<Open>("open")(Setting("TVO_KILL_LOG").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    static auto* const write = Real<ssize_t(int, const void*, std::size_t)>("write");
    const std::string whole = line + "\n";
    if (log >= 0) (void)!write(log, whole.data(), whole.size());
}

[[noreturn]] void Die(const std::string& operation) {
    if (Setting("TVO_KILL_HOW") == "power")
        for (const Written& written : AllWritten())
            if (StatusOf(written.file).st_size > written.synced)
                (void)!Real<int(int, off_t)>("ftruncate")(written.file, written.synced);
    Log("died before " + operation);
    for (;;) ::kill(::getpid(), SIGKILL);
}

bool IsLast(const std::string& operation) {
    static const std::string on = Setting("TVO_KILL_ON");
    static const int at = std::atoi(Setting("TVO_KILL_AT").c_str());
    return at > 0 && operation.starts_with(on) && ++g_count == at;
}

template <class Work>
auto Counted(bool counts, const std::string& operation, Work work) {
    if (counts && IsLast(operation)) Die(operation);
    const auto result = work();
    if (counts) Log(operation);
    return result;
}

int Sync(const char* call, int file) {
    const std::string name = NameOf(file);
    return Counted(!name.empty(), std::string(call) + " " + name, [&] {
        // The disk isn't waited for: a process that dies takes nothing with it, and what power would is known
        // here.
        if (Written* const written = WrittenLike(file)) written->synced = StatusOf(file).st_size;
        return 0;
    });
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    const std::string name = NameIn(path);
    return Counted(!name.empty() && (flags & O_CREAT), "open " + name, [&] {
        const int file = Real<Open>("open")(path, flags, mode);
        if (file >= 0 && !name.empty() && (flags & O_CREAT) && !WrittenLike(file))
            AllWritten().push_back({Real<Open>("open")(path, O_RDWR | O_CLOEXEC), StatusOf(file).st_size});
        return file;
    });
}

ssize_t write(int file, const void* bytes, std::size_t length) {
    static auto* const real = Real<ssize_t(int, const void*, std::size_t)>("write");
    const std::string name = NameOf(file);
    if (name.empty()) return real(file, bytes, length);
    const std::string operation = "write " + name;
    if (IsLast(operation)) {
        if (Setting("TVO_KILL_HOW") == "half") (void)!real(file, bytes, length / 2);
        Die(operation);
    }
    const ssize_t written = real(file, bytes, length);
    Log(operation);
    return written;
}

int fsync(int file) { return Sync("fsync", file); }
int fdatasync(int file) { return Sync("fdatasync", file); }

int ftruncate(int file, off_t length) noexcept {
    const std::string name = NameOf(file);
    return Counted(!name.empty(), "truncate " + name,
                   [&] { return Real<int(int, off_t)>("ftruncate")(file, length); });
}

int rename(const char* from, const char* to) noexcept {
    const std::string name = NameIn(from);
    return Counted(!name.empty(), "rename " + name + " " + NameIn(to),
                   [&] { return Real<int(const char*, const char*)>("rename")(from, to); });
}

int link(const char* from, const char* to) noexcept {
    const std::string name = NameIn(from);
    return Counted(!name.empty(), "link " + name + " " + NameIn(to),
                   [&] { return Real<int(const char*, const char*)>("link")(from, to); });
}

int unlink(const char* path) noexcept {
    const std::string name = NameIn(path);
    return Counted(!name.empty(), "unlink " + name, [&] { return Real<int(const char*)>("unlink")(path); });
}

}  // extern "C"
