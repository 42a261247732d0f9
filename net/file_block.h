// Blocks of components in files: records of 4-byte words, and lines of numbers. Not installed.
#pragma once
#include <bit>
#include <cstdint>
#include <cstdio>
#include <string>

namespace file_block {

// --- binary: words in little-endian form, in one piece -----------------------------------------------------

bool Write(std::FILE* file, std::uint32_t* words, int n);  // changes the words on a big-endian machine
bool Read(std::FILE* file, std::uint32_t* words, int n);

template <class Field>
std::uint32_t WordOf(Field v) {
    static_assert(sizeof(Field) == 4);
    return std::bit_cast<std::uint32_t>(v);
}

/// 1 when all were written.
template <class... Field>
int WriteWords(std::FILE* file, Field... fields) {
    std::uint32_t words[] = {WordOf(fields)...};
    return Write(file, words, sizeof...(fields));
}

/// 1 when all were there; otherwise every field stays as it was.
template <class... Field>
int ReadWords(std::FILE* file, Field&... fields) {
    std::uint32_t words[sizeof...(fields)];
    if (!Read(file, words, sizeof...(fields))) return 0;
    const std::uint32_t* word = words;
    ((fields = std::bit_cast<Field>(*word++)), ...);
    return 1;
}

// --- text: a key line, then lines of numbers split by commas ------------------------------------------------

constexpr int kLineBytes = 500;

/// Numbers are decimal and signed, the unsigned ones too, whatever the locale. Identities from 0x80000000 on are
/// negative in a file.
std::string Joined(std::initializer_list<std::uint32_t> numbers);
/// 1 when it was written.
int WriteLine(std::FILE* file, const std::string& line);

/// The next line that is no comment, and the numbers in it.
class Line {
public:
    /// Reads it; `limit` is the size of the buffer that is filled, so that a longer line goes on in the next.
    explicit Line(std::FILE* file, int limit = kLineBytes);

    bool IsThere() const { return m_text[0] != 0; }  // false at the end of the file
    bool Holds(const char* key) const;

    // The next number. One that is missing, or behind anything but a comma, leaves the field as it was, and all
    // behind it.
    Line& operator>>(std::uint32_t& v);
    Line& operator>>(int& v);
    Line& operator>>(float& v);

private:
    bool AtNumber();
    bool Take(long long& v);

    char m_text[kLineBytes];
    const char* m_at = m_text;  // null once the numbers have come to an end
};

}  // namespace file_block
