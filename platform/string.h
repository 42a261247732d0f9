// CString: text in UTF-8.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/containers.h"

/// A text of UTF-8 bytes with value semantics. Lengths and positions count bytes. Left, Mid and Right that
/// would cut through a character cut in front of it instead.
class CString {
public:
    CString() = default;
    CString(const char* text) : m_text(text ? text : "") {}
    CString(const char* bytes, int length) : m_text(bytes, static_cast<std::size_t>(length > 0 ? length : 0)) {}
    CString(std::string text) : m_text(std::move(text)) {}
    explicit CString(std::string_view text) : m_text(text) {}
    explicit CString(char c, int repeat = 1) : m_text(static_cast<std::size_t>(repeat > 0 ? repeat : 0), c) {}

    int GetLength() const { return static_cast<int>(m_text.size()); }
    bool IsEmpty() const { return m_text.empty(); }
    void Empty() { m_text.clear(); }
    operator const char*() const { return m_text.c_str(); }
    const char* GetString() const { return m_text.c_str(); }
    const std::string& Std() const { return m_text; }
    std::string_view View() const { return m_text; }

    char GetAt(int i) const { return m_text[static_cast<std::size_t>(i)]; }
    char operator[](int i) const { return GetAt(i); }
    void SetAt(int i, char c) { m_text[static_cast<std::size_t>(i)] = c; }

    CString Left(int count) const;
    CString Right(int count) const;
    CString Mid(int first) const;
    CString Mid(int first, int count) const;

    /// Position of the first hit at or behind `from`, or -1.
    int Find(char c, int from = 0) const;
    int Find(const char* text, int from = 0) const;
    int ReverseFind(char c) const;
    int FindOneOf(const char* chars) const;

    /// ASCII letters only; other characters stay.
    CString& MakeUpper();
    CString& MakeLower();
    CString& TrimLeft();   // white space: space, tab, newline, return, form feed, vertical tab
    CString& TrimRight();
    CString& Trim() { return TrimRight().TrimLeft(); }
    CString& TrimLeft(const char* chars);
    CString& TrimRight(const char* chars);

    int Replace(const char* from, const char* to);  // number of replacements
    int Remove(char c);                             // number of bytes removed
    int Insert(int at, const char* text);           // new length
    int Delete(int at, int count = 1);              // new length

    int Compare(const char* other) const { return m_text.compare(other ? other : ""); }
    int CompareNoCase(const char* other) const;  // ASCII case is folded

    /// printf formatting; the text grows as needed.
    void Format(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void AppendFormat(const char* format, ...) __attribute__((format(printf, 2, 3)));

    CString& operator+=(const CString& s) { m_text += s.m_text; return *this; }
    CString& operator+=(const char* s) { if (s) m_text += s; return *this; }
    CString& operator+=(char c) { m_text += c; return *this; }
    friend CString operator+(CString a, const CString& b) { a += b; return a; }
    friend CString operator+(CString a, const char* b) { a += b; return a; }
    friend CString operator+(const char* a, const CString& b) { return CString(a) += b; }
    friend CString operator+(CString a, char b) { a += b; return a; }

    friend bool operator==(const CString& a, const CString& b) { return a.m_text == b.m_text; }
    friend bool operator==(const CString& a, const char* b) { return a.Compare(b) == 0; }
    friend bool operator<(const CString& a, const CString& b) { return a.m_text < b.m_text; }

private:
    std::string m_text;
};

std::uint64_t HashKey(const CString& text);  // for CMap

class CStringArray : public CArray<CString> {};

/// The greatest length of at most `bytes` at which `text` can be cut without splitting a UTF-8 character.
std::size_t Utf8CutLength(std::string_view text, std::size_t bytes);
