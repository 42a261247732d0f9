#include "host/fields/field_lines.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include "host/failure.h"
#include "host/file_output.h"
#include "host/progress.h"

namespace {

constexpr std::size_t kLongestLine = 1 << 16;
constexpr std::size_t kShownOfWord = 40;  // of a word that is quoted in a message
constexpr std::uint64_t kLinesPerLook = 1 << 14;

bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

/// A word as a message quotes it: short, and without what could play tricks on a terminal.
std::string Quoted(std::string_view word) {
    std::string text = "'";
    for (const char c : word.substr(0, kShownOfWord))
        text += static_cast<unsigned char>(c) < 0x20 || c == 0x7F || static_cast<unsigned char>(c) >= 0x80
                    ? '?'
                    : c;
    return text + (word.size() > kShownOfWord ? "...'" : "'");
}

}  // namespace

FieldLines::FieldLines(const std::string& path) : m_path(path) {
    RequireReadable(path);
    m_file = std::fopen(path.c_str(), "rb");
    if (!m_file) throw DataFailure("cannot read " + path + ": " + std::strerror(errno));
    std::fseek(m_file, 0, SEEK_END);
    m_size = std::ftell(m_file);
    std::rewind(m_file);
    m_progress = std::make_unique<CTerminalProgress>("reading the field");
}

FieldLines::~FieldLines() { std::fclose(m_file); }

void FieldLines::Refuse(const std::string& reason) const {
    throw DataFailure(m_path + ": line " + std::to_string(m_number) + ": " + reason);
}

bool FieldLines::ReadLine() {
    m_buffer.clear();
    int c;
    while ((c = getc_unlocked(m_file)) != EOF && c != '\n') {
        if (m_buffer.size() == kLongestLine) {
            ++m_number;
            Refuse("is longer than " + std::to_string(kLongestLine) + " bytes");
        }
        m_buffer += static_cast<char>(c);
    }
    if (std::ferror(m_file)) throw DataFailure("cannot read " + m_path + ": " + std::strerror(errno));
    if (c == EOF && m_buffer.empty()) return false;
    ++m_number;
    m_read += static_cast<std::int64_t>(m_buffer.size()) + 1;
    if (m_number % kLinesPerLook == 0 && m_size > 0)
        m_progress->ShowProgress(static_cast<int>(std::min<std::int64_t>(100, 100 * m_read / m_size)));
    return true;
}

bool FieldLines::Next() {
    while (ReadLine()) {
        m_line = m_buffer;
        if (m_number == 1 && m_line.starts_with("\xEF\xBB\xBF")) m_line.remove_prefix(3);
        while (!m_line.empty() && IsSpace(m_line.front())) m_line.remove_prefix(1);
        while (!m_line.empty() && IsSpace(m_line.back())) m_line.remove_suffix(1);
        if (!m_line.empty()) return true;
    }
    m_line = {};
    return false;
}

void FieldLines::MustHave(const char* what) {
    if (!Next()) Refuse(std::string("the file ends where ") + what + " should follow");
}

std::string_view FieldLines::Word() {
    std::size_t length = 0;
    while (length < m_line.size() && !IsSpace(m_line[length])) ++length;
    const std::string_view word = m_line.substr(0, length);
    while (length < m_line.size() && IsSpace(m_line[length])) ++length;
    m_line.remove_prefix(length);
    return word;
}

std::int64_t FieldLines::Integer(const char* what, std::int64_t least, std::int64_t most) {
    const std::string_view word = Word();
    if (word.empty()) Refuse(std::string(what) + " is missing");
    std::int64_t value = 0;
    const std::string_view digits = word.starts_with('+') ? word.substr(1) : word;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (end != digits.data() + digits.size() || error == std::errc::invalid_argument)
        Refuse(std::string(what) + ": " + Quoted(word) + " is no whole number");
    if (error == std::errc::result_out_of_range || value < least || value > most)
        Refuse(std::string(what) + ": " + Quoted(word) + " is out of range");
    return value;
}

float FieldLines::Real(const char* what) {
    const std::string_view word = Word();
    if (word.empty()) Refuse(std::string(what) + " is missing");
    double value = 0;
    const std::string_view digits = word.starts_with('+') ? word.substr(1) : word;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (end != digits.data() + digits.size() || error == std::errc::invalid_argument)
        Refuse(std::string(what) + ": " + Quoted(word) + " is no number");
    constexpr double kLargest = std::numeric_limits<float>::max();
    if (error == std::errc::result_out_of_range) {
        // Too small or too large for a double: only an exponent with a minus makes it small.
        const std::size_t e = digits.find_first_of("eE");
        const bool small = e != std::string_view::npos && e + 1 < digits.size() && digits[e + 1] == '-';
        return small ? 0.0f : std::numeric_limits<float>::infinity();
    }
    if (std::fabs(value) > kLargest)
        return std::copysign(std::numeric_limits<float>::infinity(), static_cast<float>(value > 0 ? 1 : -1));
    return static_cast<float>(value);
}

void FieldLines::NoMore() {
    if (!m_line.empty()) Refuse("there is more on the line than belongs there: " + Quoted(m_line));
}
