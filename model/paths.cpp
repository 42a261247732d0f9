#include "model/paths.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace fs = std::filesystem;

CString G_strWorkPath;

namespace {

// A path cut in its four parts, which written one behind the other are the path again.
struct PathParts {
    std::string_view drive, dir, title, ext;
};

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsSlash(char c) { return c == '/' || c == '\\'; }

PathParts Split(std::string_view path) {
    PathParts parts;
    if (path.size() >= 2 && IsLetter(path[0]) && path[1] == ':') {
        parts.drive = path.substr(0, 2);
        path.remove_prefix(2);
    }
    const std::size_t slash = path.find_last_of("/\\");
    parts.dir = path.substr(0, slash == path.npos ? 0 : slash + 1);
    path.remove_prefix(parts.dir.size());
    parts.title = path.substr(0, path.rfind('.'));
    parts.ext = path.substr(parts.title.size());
    return parts;
}

// From the start of the path to the end of one of its parts.
CString UpTo(const CString& path, std::string_view part) {
    return CString(std::string_view(path.GetString(),
                                    static_cast<std::size_t>(part.data() + part.size() - path.GetString())));
}

// The path as the system takes it.
std::string Native(const CString& path) {
    std::string native = path.Std();
    std::replace(native.begin(), native.end(), '\\', '/');
    return native;
}

CString UnderWorkPath(const char* name, int fullPath) {
    return fullPath ? CString(name) : IncludeTrailingSlash(G_strWorkPath) + name;
}

CString FolderOf(const std::string& file) { return get_file_path(CString(file)); }

// The entries of a folder in ascending order, as the order in which a system lists them is its own.
std::vector<fs::directory_entry> Entries(const CString& folder) {
    std::vector<fs::directory_entry> entries;
    std::error_code error;
    const std::string native = Native(folder);
    fs::directory_iterator at(native.empty() ? "." : native, error), end;
    while (!error && at != end) {
        entries.push_back(*at);
        at.increment(error);
    }
    std::sort(entries.begin(), entries.end());
    return entries;
}

std::string NameOf(const fs::directory_entry& entry) { return entry.path().filename().string(); }

// "*" stands for any text, "?" for one character. Case counts, as it does for the system.
bool Matches(std::string_view name, std::string_view pattern) {
    std::size_t at = 0, in = 0;
    std::size_t star = pattern.npos, resume = 0;  // the last star, and how much of the name it ends before
    while (at < name.size()) {
        if (in < pattern.size() && pattern[in] == '*') {
            star = in++;
            resume = at;
        } else if (in < pattern.size() && pattern[in] == '?') {
            do ++at;
            while (at < name.size() && (name[at] & 0xC0) == 0x80);  // the rest of a UTF-8 character
            ++in;
        } else if (in < pattern.size() && pattern[in] == name[at]) {
            ++at;
            ++in;
        } else if (star != pattern.npos) {
            at = ++resume;
            in = star + 1;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', in) == pattern.npos;
}

// Names of the regular files in a folder that match.
std::vector<std::string> MatchingFiles(const CString& folder, const std::string& pattern) {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : Entries(folder)) {
        std::error_code error;
        const std::string name = NameOf(entry);
        if (entry.is_regular_file(error) && Matches(name, pattern)) names.push_back(name);
    }
    return names;
}

// "*.*" means every file, one without an extension too.
std::string PatternOf(const CString& name) { return name.IsEmpty() || name == "*.*" ? "*" : name.Std(); }
std::string PatternOfExt(CString ext) {
    ext.TrimLeft("*").TrimLeft(".");
    return ext.IsEmpty() || ext == "*" ? "*" : "*." + ext.Std();
}

int Delete(const CString& folder, const std::string& pattern) {
    int count = 0;
    for (const std::string& name : MatchingFiles(folder, pattern)) {
        std::error_code error;
        if (fs::remove(Native(IncludeTrailingSlash(folder)) + name, error)) ++count;
    }
    return count;
}

void Enumerate(const CString& folder, CStringArray& out) {
    for (const fs::directory_entry& entry : Entries(folder)) {
        std::error_code error;
        if (!entry.is_directory(error) || entry.is_symlink(error)) continue;
        const CString path = IncludeTrailingSlash(folder) + NameOf(entry).c_str();
        out.Add(path);
        Enumerate(path, out);
    }
}

}  // namespace

CString get_drive(const CString& path) { return CString(Split(path.View()).drive); }
CString get_file_path(const CString& path) { return UpTo(path, Split(path.View()).dir); }
CString get_file_name(const CString& path) {
    const PathParts parts = Split(path.View());
    return CString(path.View().substr(parts.drive.size() + parts.dir.size()));
}
CString get_file_title(const CString& path) { return CString(Split(path.View()).title); }
CString get_file_ext(const CString& path) { return CString(Split(path.View()).ext); }
CString get_file_dir_and_name(const CString& path) { return UpTo(path, Split(path.View()).title); }

void split_path_name(const CString& path, CString& folder, CString& name) {
    const CString whole = path;  // an argument may be both
    folder = get_file_path(whole);
    name = get_file_name(whole);
}

void SplitPathName(const CString& path, CString& drive, CString& dir, CString& title, CString& ext) {
    const CString whole = path;
    const PathParts parts = Split(whole.View());
    drive = CString(parts.drive);
    dir = CString(parts.dir);
    title = CString(parts.title);
    ext = CString(parts.ext);
}

CString IncludeTrailingSlash(const CString& path) {
    return path.IsEmpty() || IsSlash(path[path.GetLength() - 1]) ? path : path + '/';
}

CString ExtractWorkPath(const CString& file) { return get_file_path(file); }

CString ConfirmFileExt(const CString& path, const CString& ext) {
    CString wanted = ext;
    wanted.TrimLeft(".");
    const bool namesFile = !path.IsEmpty() && !IsSlash(path[path.GetLength() - 1]);
    if (!namesFile || wanted.IsEmpty() || get_file_ext(path).CompareNoCase("." + wanted) == 0) return path;
    return path + "." + wanted;
}

CString get_my_exe_directory() {
    std::error_code error;
    return FolderOf(fs::read_symlink("/proc/self/exe", error).string());
}

CString GetModulePath() {
    Dl_info info{};
    std::error_code error;
    if (!dladdr(&G_strWorkPath, &info) || !info.dli_fname) return get_my_exe_directory();
    return FolderOf(fs::canonical(info.dli_fname, error).string());
}

int file_exists(const CString& path) {
    const std::string native = Native(path);
    std::error_code error;
    if (!fs::is_regular_file(native, error)) return 0;
    std::FILE* f = std::fopen(native.c_str(), "r");
    if (f) std::fclose(f);
    return f != nullptr;
}

int directory_exists(const CString& path) {
    std::error_code error;
    return fs::is_directory(Native(path), error);
}

int FileExists(const char* name, int fullPath) { return file_exists(UnderWorkPath(name, fullPath)); }
int FolderExists(const char* name, int fullPath) { return directory_exists(UnderWorkPath(name, fullPath)); }

int force_directory(const CString& path) {
    std::error_code error;
    fs::create_directories(Native(path), error);
    return directory_exists(path);
}

int get_sub_directory(const CString& folder, CStringArray& out) {
    int count = 0;
    for (const fs::directory_entry& entry : Entries(folder)) {
        std::error_code error;
        if (!entry.is_directory(error)) continue;
        out.Add(CString(NameOf(entry)));
        ++count;
    }
    return count;
}

int enum_sub_directory(const CString& folder, CStringArray& out) {
    const int before = out.GetSize();
    Enumerate(folder, out);
    return out.GetSize() - before;
}

int get_files(const CString& pattern, CStringArray& out) {
    const CString folder = get_file_path(pattern);
    const auto names = MatchingFiles(folder, PatternOf(get_file_name(pattern)));
    for (const std::string& name : names) out.Add(folder + name.c_str());
    return static_cast<int>(names.size());
}

int GetFiles(const CString& folder, const CString& ext, CStringArray& out) {
    const auto names = MatchingFiles(folder, PatternOfExt(ext));
    for (const std::string& name : names) out.Add(CString(name));
    return static_cast<int>(names.size());
}

int DeleteFiles(const CString& pattern) {
    return Delete(get_file_path(pattern), PatternOf(get_file_name(pattern)));
}
int DeleteFiles2(const CString& folder, const CString& ext) { return Delete(folder, PatternOfExt(ext)); }

int IsFileOpen(const CString& path) {
    const std::string native = Native(path);
    struct stat wanted {};
    if (stat(native.c_str(), &wanted) != 0) return 0;
    // To open and close a file drops the locks that this program has on it, so that is done only when no
    // handle of its own leads there.
    std::error_code error;
    for (fs::directory_iterator at("/proc/self/fd", error), end; !error && at != end; at.increment(error)) {
        struct stat open {};
        if (stat(at->path().c_str(), &open) == 0 && open.st_dev == wanted.st_dev &&
            open.st_ino == wanted.st_ino)
            return 1;
    }
    const int fd = ::open(native.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return 0;
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    const bool held = fcntl(fd, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
    ::close(fd);
    return held;
}

std::int64_t GetFileWriteTime(const CString& path) {
    struct stat info {};
    return stat(Native(path).c_str(), &info) == 0 ? static_cast<std::int64_t>(info.st_mtime) : 0;
}
