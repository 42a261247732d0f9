#include "host/models/journal_places.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "host/models/crc32.h"

namespace {

namespace fs = std::filesystem;
constexpr std::string_view kEnding = ".tvo-journal";

}  // namespace

std::string PlainPath(const std::string& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    if (error) return path;
    const fs::path plain = fs::weakly_canonical(absolute, error);
    return error ? absolute.string() : plain.string();
}

std::string StateFolder() {
    // A relative path there is void by the rules of these variables.
    if (const char* state = std::getenv("XDG_STATE_HOME"); state && state[0] == '/')
        return std::string(state) + "/tvobase";
    if (const char* home = std::getenv("HOME"); home && *home)
        return std::string(home) + "/.local/state/tvobase";
    return "";
}

std::string JournalBeside(const std::string& modelPath) {
    const fs::path path(modelPath);
    std::string name = ".";
    name.append(path.filename().string()).append("-journal");
    return (path.parent_path() / name).string();
}

std::string JournalInState(const std::string& modelPath) {
    const std::string folder = StateFolder();
    if (folder.empty()) return "";
    char checksum[16];
    std::snprintf(checksum, sizeof checksum, "-%08x", Crc32(modelPath));
    return folder + "/" + fs::path(modelPath).filename().string() + checksum + std::string(kEnding);
}

std::string BaseBeside(const std::string& journalPath) { return journalPath + "-base"; }

std::string NewJournalInState() {
    const std::string folder = StateFolder();
    std::error_code error;
    if (!folder.empty()) fs::create_directories(folder, error);
    for (int n = 1; n < 1000 && !folder.empty(); ++n) {
        const std::string path = folder + "/unnamed-" + std::to_string(::getpid()) + "-" + std::to_string(n) +
                                 std::string(kEnding);
        if (!fs::exists(fs::symlink_status(path, error))) return path;
    }
    return "";
}

std::vector<std::string> JournalsInState() {
    std::vector<std::string> paths;
    std::error_code error;
    const std::string folder = StateFolder();
    if (folder.empty()) return paths;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
        if (at->path().filename().string().ends_with(kEnding)) paths.push_back(at->path().string());
    std::sort(paths.begin(), paths.end());
    return paths;
}

JournalBase BaseOf(const std::string& modelPath) {
    if (modelPath.empty()) return {};
    const int file = ::open(modelPath.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat status {};
    const bool regular = file >= 0 && ::fstat(file, &status) == 0 && S_ISREG(status.st_mode);
    JournalBase base{regular, 0, 0};
    constexpr std::size_t kPiece = 1 << 20;
    const auto buffer = regular ? std::make_unique_for_overwrite<char[]>(kPiece) : nullptr;
    while (base.file) {
        const ssize_t n = ::read(file, buffer.get(), kPiece);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) base = {};
        if (n <= 0) break;
        base.checksum = Crc32({buffer.get(), static_cast<std::size_t>(n)}, base.checksum);
        base.length += static_cast<std::uint64_t>(n);
    }
    if (file >= 0) ::close(file);
    return base;
}
