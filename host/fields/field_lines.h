// The lines of a field file, and the numbers in them.
#pragma once
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

class CTerminalProgress;

/// Reads a text file line by line. What is wrong is told as DataFailure with the file and the line's number.
class FieldLines {
public:
    explicit FieldLines(const std::string& path);  // throws when the file can't be read
    ~FieldLines();
    FieldLines(const FieldLines&) = delete;
    FieldLines& operator=(const FieldLines&) = delete;

    /// Moves to the next line that is not blank; false at the end. A byte order mark and spaces at both ends
    /// are not part of it.
    bool Next();
    /// The same, where the file must go on. `what` is awaited.
    void MustHave(const char* what);
    std::string_view Line() const { return m_line; }
    std::uint64_t Number() const { return m_number; }

    /// Takes the next word off the line; empty when there is none.
    std::string_view Word();
    /// Takes a whole number from `least` to `most`.
    std::int64_t Integer(const char* what, std::int64_t least, std::int64_t most);
    /// Takes a number as a float; "nan" and "inf" are taken as such, a number too large for a float is
    /// infinite.
    float Real(const char* what);
    /// Refuses a line with words left on it.
    void NoMore();

    [[noreturn]] void Refuse(const std::string& reason) const;

private:
    bool ReadLine();

    std::string m_path;
    std::FILE* m_file = nullptr;
    std::unique_ptr<CTerminalProgress> m_progress;
    std::int64_t m_size = 0, m_read = 0;  // bytes
    std::string m_buffer;                 // the line as it stands in the file
    std::string_view m_line;              // what is left of it
    std::uint64_t m_number = 0;           // of the line, from 1
};
