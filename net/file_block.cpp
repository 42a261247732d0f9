#include "net/file_block.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "model/text_stream.h"
#include "platform/number_text.h"

namespace file_block {

namespace {

void Swap([[maybe_unused]] std::uint32_t* words, [[maybe_unused]] int n) {
    if constexpr (std::endian::native == std::endian::big)
        for (int i = 0; i < n; ++i) words[i] = __builtin_bswap32(words[i]);
}

}  // namespace

bool Write(std::FILE* file, std::uint32_t* words, int n) {
    Swap(words, n);
    return file && std::fwrite(words, 4 * static_cast<std::size_t>(n), 1, file) == 1;
}

bool Read(std::FILE* file, std::uint32_t* words, int n) {
    if (!file || std::fread(words, 4 * static_cast<std::size_t>(n), 1, file) != 1) return false;
    Swap(words, n);
    return true;
}

std::string Joined(std::initializer_list<std::uint32_t> numbers) {
    std::string line;
    for (const std::uint32_t v : numbers) {
        if (!line.empty()) line += ',';
        line += std::to_string(static_cast<std::int32_t>(v));
    }
    return line;
}

int WriteLine(std::FILE* file, const std::string& line) {
    return file && std::fwrite(line.data(), 1, line.size(), file) == line.size() && std::fputc('\n', file) != EOF;
}

Line::Line(std::FILE* file, int limit) {
    m_text[0] = 0;
    if (file) fgets_skip_comment(m_text, std::min(limit, kLineBytes), file, ";");
}

bool Line::Holds(const char* key) const { return std::strstr(m_text, key) != nullptr; }

bool Line::AtNumber() {
    if (!m_at || m_at == m_text) return m_at != nullptr;
    if (*m_at == ',')
        ++m_at;
    else
        m_at = nullptr;
    return m_at != nullptr;
}

bool Line::Take(long long& v) {
    if (!AtNumber()) return false;
    char* end = nullptr;
    v = std::strtoll(m_at, &end, 10);
    m_at = end == m_at ? nullptr : end;
    return m_at != nullptr;
}

Line& Line::operator>>(std::uint32_t& v) {
    long long number;
    if (Take(number)) v = static_cast<std::uint32_t>(number & 0xFFFFFFFF);
    return *this;
}

Line& Line::operator>>(int& v) {
    constexpr long long kLow = std::numeric_limits<int>::min(), kHigh = std::numeric_limits<int>::max();
    long long number;
    if (Take(number)) v = static_cast<int>(std::clamp(number, kLow, kHigh));
    return *this;
}

Line& Line::operator>>(float& v) {
    if (!AtNumber()) return *this;
    // LeadingReal gives 0 for what is no number; the field keeps its value then.
    const char* digits = m_at + std::strspn(m_at, " \t\r\n");
    if (*digits == '+' || *digits == '-') ++digits;
    if (*digits == '.') ++digits;
    if (std::isdigit(static_cast<unsigned char>(*digits))) v = static_cast<float>(LeadingReal(m_at));
    m_at = nullptr;  // always the last of its line
    return *this;
}

}  // namespace file_block
