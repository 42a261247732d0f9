#include "platform/string.h"

#include <cstdarg>
#include <cstdio>

namespace {

constexpr const char* kWhite = " \t\n\r\f\v";

std::string FormatText(const char* format, std::va_list args) {
    std::va_list again;
    va_copy(again, args);
    const int length = std::vsnprintf(nullptr, 0, format, args);
    std::string out;
    if (length > 0) {
        out.resize(static_cast<std::size_t>(length));
        std::vsnprintf(out.data(), out.size() + 1, format, again);
    }
    va_end(again);
    return out;
}

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

int ToPosition(std::size_t at) { return at == std::string::npos ? -1 : static_cast<int>(at); }

}  // namespace

std::size_t Utf8CutLength(std::string_view text, std::size_t bytes) {
    if (bytes >= text.size()) return text.size();
    std::size_t cut = bytes;
    // A character has at most three continuation bytes; more than that is not UTF-8, and is cut as bytes.
    for (int back = 0; back < 4; ++back, --cut) {
        if (!IsContinuation(text[cut])) return cut;
        if (cut == 0) break;
    }
    return bytes;
}

CString CString::Left(int count) const { return Mid(0, count); }
CString CString::Right(int count) const {
    if (count >= GetLength()) return *this;
    return count <= 0 ? CString() : Mid(GetLength() - count);
}
CString CString::Mid(int first) const { return Mid(first, GetLength()); }
CString CString::Mid(int first, int count) const {
    if (first < 0) first = 0;
    if (first >= GetLength() || count <= 0) return {};
    const std::size_t from = Utf8CutLength(m_text, static_cast<std::size_t>(first));
    const std::size_t end = static_cast<std::size_t>(first) + static_cast<std::size_t>(count);
    const std::size_t to = Utf8CutLength(m_text, end);
    return CString(std::string_view(m_text).substr(from, to > from ? to - from : 0));
}

int CString::Find(char c, int from) const { return ToPosition(m_text.find(c, static_cast<std::size_t>(from > 0 ? from : 0))); }
int CString::Find(const char* text, int from) const {
    return ToPosition(m_text.find(text, static_cast<std::size_t>(from > 0 ? from : 0)));
}
int CString::ReverseFind(char c) const { return ToPosition(m_text.rfind(c)); }
int CString::FindOneOf(const char* chars) const { return ToPosition(m_text.find_first_of(chars)); }

CString& CString::MakeUpper() {
    for (char& c : m_text)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return *this;
}
CString& CString::MakeLower() {
    for (char& c : m_text)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return *this;
}
CString& CString::TrimLeft() { return TrimLeft(kWhite); }
CString& CString::TrimRight() { return TrimRight(kWhite); }
CString& CString::TrimLeft(const char* chars) {
    m_text.erase(0, std::min(m_text.find_first_not_of(chars), m_text.size()));
    return *this;
}
CString& CString::TrimRight(const char* chars) {
    m_text.erase(m_text.find_last_not_of(chars) + 1);
    return *this;
}

int CString::Replace(const char* from, const char* to) {
    const std::string_view what = from ? from : "", with = to ? to : "";
    if (what.empty()) return 0;
    int count = 0;
    for (std::size_t at = 0; (at = m_text.find(what, at)) != std::string::npos; at += with.size(), ++count)
        m_text.replace(at, what.size(), with);
    return count;
}
int CString::Remove(char c) { return static_cast<int>(std::erase(m_text, c)); }
int CString::Insert(int at, const char* text) {
    m_text.insert(std::min(static_cast<std::size_t>(at > 0 ? at : 0), m_text.size()), text ? text : "");
    return GetLength();
}
int CString::Delete(int at, int count) {
    if (at < 0) at = 0;
    if (at < GetLength() && count > 0) m_text.erase(static_cast<std::size_t>(at), static_cast<std::size_t>(count));
    return GetLength();
}

int CString::CompareNoCase(const char* other) const {
    // strcasecmp would follow the locale; folding is for ASCII alone.
    CString a = *this, b = other;
    return a.MakeLower().m_text.compare(b.MakeLower().m_text);
}

void CString::Format(const char* format, ...) {
    std::va_list args;
    va_start(args, format);
    m_text = FormatText(format, args);
    va_end(args);
}
void CString::AppendFormat(const char* format, ...) {
    std::va_list args;
    va_start(args, format);
    m_text += FormatText(format, args);
    va_end(args);
}

std::uint64_t HashKey(const CString& text) {
    std::uint64_t h = 1469598103934665603ull;  // FNV-1a
    for (const char c : text.View()) h = (h ^ static_cast<unsigned char>(c)) * 1099511628211ull;
    return h;
}
