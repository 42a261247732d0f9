#include "host/editor/session_files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "host/failure.h"
#include "host/play_event.h"

namespace {

namespace fs = std::filesystem;

fs::path Absolute(const std::string& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    return (error ? fs::path(path) : absolute).lexically_normal();
}

bool IsSame(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size &&
           a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
}

}  // namespace

void SessionFiles::Forget() {
    for (const Kept& kept : m_kept) ::close(kept.file);
    m_kept.clear();
    m_known.clear();
    m_folders.clear();
    m_copied = 0;
    m_bytes = 0;
    m_whole = true;
    m_failure.clear();
}

std::string SessionFiles::Named(const std::string& path) {
    if (path.empty()) return {};
    const fs::path absolute = Absolute(path);
    const std::size_t number =
        m_folders.try_emplace(absolute.parent_path().string(), m_folders.size() + 1).first->second;
    return std::string(1, '@')
        .append(std::to_string(number))
        .append(1, '/')
        .append(absolute.filename().string());
}

std::optional<std::string> SessionFiles::Read(const std::string& path) {
    const std::string plain = Absolute(path).string(), word = ScriptWord(Named(path));
    struct stat now {};
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    const bool good = file >= 0 && ::fstat(file, &now) == 0 && S_ISREG(now.st_mode);
    const auto known = m_known.find(plain);
    if (!good || (known != m_known.end() && IsSame(known->second, now))) {
        if (file >= 0) ::close(file);
        if (good || known == m_known.end()) return {};
        m_known.erase(known);
        return "nofile " + word;
    }
    m_known[plain] = now;
    const bool large = now.st_size > kMostCopied;
    const std::string copy = large ? plain
                                   : std::to_string(m_kept.size() + 1).append(1, '-') +
                                         fs::path(plain).filename().string().substr(0, 200);
    // Too many to hold them all: they are copied, if there is a folder, and not held.
    const bool hold = m_kept.size() < kMostHeld;
    if (!hold) m_whole = false;
    m_kept.push_back({file, now, path, large ? std::string() : copy});
    try {
        if (!m_folder.empty()) Copy(m_kept.back());
    } catch (const DataFailure& failure) {
        if (m_failure.empty()) m_failure = failure.what();
    }
    if (!hold) {
        ::close(file);
        m_kept.back().file = -1;
    }
    return "file " + word + " " + ScriptWord(copy);
}

void SessionFiles::Written(const std::string& path) {
    struct stat now {};
    if (::stat(path.c_str(), &now) == 0) m_known[Absolute(path).string()] = now;
}

void SessionFiles::CopyTo(const std::string& folder) {
    m_folder = folder;
    m_copied = 0;
    m_bytes = 0;
    m_failure.clear();
    for (const Kept& kept : m_kept) Copy(kept);
}

void SessionFiles::Copy(const Kept& kept) {
    if (kept.copy.empty()) return;
    const auto fail = [](const std::string& path, int error) {
        throw DataFailure(path + ": " + std::strerror(error));
    };
    struct stat now {};
    if (kept.file < 0 || ::fstat(kept.file, &now) != 0 || !IsSame(kept.as, now))
        throw DataFailure(kept.path + ": was written over after it had been read");
    std::error_code error;
    fs::create_directories(m_folder, error);
    const std::string to = m_folder + "/" + kept.copy;
    const int out = ::open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (out < 0) fail(to, errno);
    char piece[65536];
    int wrong = 0;
    for (off_t at = 0; wrong == 0 && at < now.st_size;) {
        const ssize_t got = ::pread(kept.file, piece, sizeof piece, at);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) wrong = got < 0 ? errno : EIO;
        for (ssize_t done = 0; wrong == 0 && done < got;) {
            const ssize_t n = ::write(out, piece + done, static_cast<std::size_t>(got - done));
            if (n > 0) done += n;
            else if (n == 0 || errno != EINTR) wrong = n == 0 ? ENOSPC : errno;
        }
        at += got > 0 ? got : 0;
    }
    if (::close(out) != 0 && wrong == 0) wrong = errno;
    if (wrong != 0) fail(to, wrong);
    ++m_copied;
    m_bytes += static_cast<std::uint64_t>(now.st_size);
}
