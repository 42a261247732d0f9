#include "host/settings/settings_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <new>

#include "host/editor/reason_text.h"
#include "host/failure.h"
#include "host/models/durable_file.h"
#include "host/models/file_system.h"
#include "platform/code_page.h"

namespace {

namespace fs = std::filesystem;
constexpr std::size_t kLongestFile = 4 << 20;
constexpr std::string_view kFirstLine = "# tvobase\n";

/// With what a line can't hold as %HH.
std::string Escaped(std::string_view text, std::string_view special) {
    static const char* const digits = "0123456789ABCDEF";
    const bool utf8 = IsUtf8(text);
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        const bool edge = (i == 0 || i + 1 == text.size()) && (c == ' ' || c == '#');
        if (c < ' ' || c == 127 || c == '%' || edge || (c > 127 && !utf8) || special.find(text[i]) != special.npos)
            out.append({'%', digits[c >> 4], digits[c & 15]});
        else
            out += text[i];
    }
    return out;
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

std::optional<std::string> Unescaped(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            out += text[i];
            continue;
        }
        const int high = i + 2 < text.size() ? HexDigit(text[i + 1]) : -1;
        const int low = high >= 0 ? HexDigit(text[i + 2]) : -1;
        if (low < 0) return {};
        out += static_cast<char>(high << 4 | low);
        i += 2;
    }
    return out;
}

/// Of several sessions that end together each waits for the one before, up to a second.
class FolderLock {
public:
    explicit FolderLock(const std::string& folder) : m_file(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        for (int i = 0; m_file >= 0 && i < 100 && ::flock(m_file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK; ++i)
            ::usleep(10'000);
    }
    ~FolderLock() {
        if (m_file >= 0) ::close(m_file);
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

private:
    int m_file;
};

}  // namespace

std::string SettingsFile::DefaultPath() {
    // A relative path there is void by the rules of these variables.
    if (const char* config = std::getenv("XDG_CONFIG_HOME"); config && config[0] == '/')
        return std::string(config) + "/tvobase/settings";
    if (const char* home = std::getenv("HOME"); home && *home) return std::string(home) + "/.config/tvobase/settings";
    return "";
}

SettingsFile::SettingsFile(std::string path) : m_path(std::move(path)) {
    if (!m_path.empty()) Load();
}

/// Every save gives the name to another file.
bool SettingsFile::ChangedByOthers() {
    const FileStamp stamp = StampOf(m_path);
    return std::exchange(m_stamp, stamp) != stamp;
}

void SettingsFile::Refresh() {
    std::error_code error;
    if (m_path.empty() || !ChangedByOthers() || !fs::exists(m_path, error)) return;
    auto ours = std::exchange(m_values, {});
    Load();
    if (m_values.empty()) {  // nothing that can be used
        m_values = std::move(ours);
        m_rewrite = !m_values.empty();
        return;
    }
    for (const Key& key : m_written) m_values[key] = ours[key];
}

void SettingsFile::Load() {
    ChangedByOthers();
    std::error_code error;
    const fs::file_status status = fs::status(m_path, error);
    if (status.type() == fs::file_type::not_found) return;
    if (!fs::is_regular_file(status)) return SetAside("不是普通文件");
    if (fs::file_size(m_path, error) > kLongestFile || error) return SetAside("文件太大");
    int reason = 0;
    const std::string text = ReadFileBytes(m_path, reason);
    if (reason != 0) return SetAside(ReasonOf(reason));
    if (text.find('\0') != text.npos || !IsUtf8(text)) return SetAside("内容不是文本");
    if (const std::size_t bad = TakeLines(text)) SetAside("有 " + std::to_string(bad) + " 行读不懂, 其余照用");
}

std::size_t SettingsFile::TakeLines(std::string_view text) {
    std::size_t bad = 0;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (line.empty() || line.front() == '#') continue;
        const std::size_t equals = line.find(" =");
        const std::string_view key = line.substr(0, equals);
        const std::size_t separator = key.rfind('\\');
        const auto fields = {equals, separator};
        bool sense = std::find(fields.begin(), fields.end(), line.npos) == fields.end();
        const std::string_view rest = sense ? line.substr(equals + 2) : line;
        const auto path = sense ? Unescaped(key.substr(0, separator)) : std::nullopt;
        const auto name = sense ? Unescaped(key.substr(separator + 1)) : std::nullopt;
        const auto value = Unescaped(rest.starts_with(' ') ? rest.substr(1) : rest);
        sense = path && name && value && !name->empty() && (rest.empty() || rest.front() == ' ');
        if (sense)
            m_values[{*path, *name}] = *value;
        else
            ++bad;
    }
    return bad;
}

void SettingsFile::SetAside(const std::string& reason) {
    std::error_code error;
    std::string aside;
    for (int n = 1; n < 1000; ++n) {
        aside = m_path + ".broken-" + std::to_string(n);
        if (fs::symlink_status(aside, error).type() == fs::file_type::not_found) break;
    }
    fs::rename(m_path, aside, error);
    Tell("设置文件 " + m_path + " 有问题: " + reason + (error ? "; 也无法改名保留" : "; 已改名为 " + aside));
    m_rewrite = !m_values.empty();
}

std::optional<std::string> SettingsFile::Read(const std::string& path, const std::string& name) const {
    const auto found = m_values.find({path, name});
    if (found == m_values.end()) return {};
    return found->second;
}

void SettingsFile::Write(const std::string& path, const std::string& name, const std::string& value) {
    const auto [at, isNew] = m_values.try_emplace({path, name}, value);
    if (isNew || at->second != value) m_written.insert(at->first);
    at->second = value;
}

std::string SettingsFile::Text() const {
    std::string text(kFirstLine);
    for (const auto& [key, value] : m_values)
        text += Escaped(key.first, "=") + "\\" + Escaped(key.second, "=\\") + " = " + Escaped(value, "") + "\n";
    return text;
}

void SettingsFile::Save() {
    if ((m_written.empty() && !m_rewrite) || m_path.empty()) return;
    try {
        std::error_code ignored;
        fs::create_directories(fs::path(m_path).parent_path(), ignored);
        const FolderLock oneAtATime(FolderOf(m_path));  // from here to the end: nobody saves in between
        Refresh();
        DurableFile file(m_path);
        file.Write(Text());
        file.Commit();
        ChangedByOthers();  // by this one
        m_written.clear();
        m_rewrite = false;
        m_told = false;
    } catch (const std::exception& failure) {
        if (!std::exchange(m_told, true)) Tell("设置没有保存到 " + m_path + ": " + ReasonInChinese(failure.what(), m_path));
    }
}
