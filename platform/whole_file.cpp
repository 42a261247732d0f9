#include "platform/whole_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

/// Follows a symbolic link, so that the file it names is replaced and not the link.
std::string RealPath(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    return real ? real.get() : path;
}

}  // namespace

std::string ErrorReason(int error) { return error ? std::strerror(error) : "unknown reason"; }

std::string ReplaceWholeFile(const std::string& path,
                             const std::function<std::string(const std::string&)>& write) {
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode))
        return S_ISDIR(status.st_mode) ? ErrorReason(EISDIR) : write(path);
    const std::string target = RealPath(path);
    const std::string beside = target + ".part" + std::to_string(::getpid());
    std::string reason = write(beside);
    if (reason.empty() && std::rename(beside.c_str(), target.c_str()) != 0) reason = ErrorReason(errno);
    if (!reason.empty()) std::remove(beside.c_str());
    return reason;
}
