#include "platform/whole_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace {

/// Follows symbolic links, so that the file they name is replaced, or made, and not the link.
std::string RealPath(const std::string& path) {
    constexpr int kMostLinks = 40;  // as the system
    std::string target = path;
    for (int i = 0; i < kMostLinks; ++i) {
        std::error_code error;
        const std::filesystem::path named = std::filesystem::read_symlink(target, error);
        if (error) break;  // no link
        target = (std::filesystem::path(target).parent_path() / named).string();
    }
    return target;
}

}  // namespace

std::string ErrorReason(int error) { return error ? std::strerror(error) : "unknown reason"; }

std::string ReplaceWholeFile(const std::string& path,
                             const std::function<std::string(const std::string&)>& write) {
    struct stat status {};
    const bool exists = ::stat(path.c_str(), &status) == 0;
    if (exists && !S_ISREG(status.st_mode))
        return S_ISDIR(status.st_mode) ? ErrorReason(EISDIR) : write(path);
    const std::string target = RealPath(path);
    const std::string beside = target + ".part" + std::to_string(::getpid());
    std::string reason = write(beside);
    // What may be read by few stays so. A file system without permissions is no reason to fail.
    if (reason.empty() && exists) static_cast<void>(::chmod(beside.c_str(), status.st_mode & 07777));
    if (reason.empty() && std::rename(beside.c_str(), target.c_str()) != 0) reason = ErrorReason(errno);
    if (!reason.empty()) std::remove(beside.c_str());
    return reason;
}
