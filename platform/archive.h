// CArchive: values in a fixed little-endian form, to and from a file or memory.
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

class CString;

/// One pass of storing or of loading. Borrows the file, which stays open; an archive over memory holds what
/// it stored, and borrows the bytes that it loads. A load past the end gives zeros and empty texts and sets
/// IsShort; from then on everything loads as zero, so that nobody reads a torn record.
class CArchive {
public:
    enum Mode { store = 0, load = 1 };

    CArchive(std::FILE* f, Mode mode) : m_file(f), m_loading(mode == load) {}
    CArchive() = default;                                                           // stores to memory
    explicit CArchive(std::string_view bytes) : m_bytes(bytes), m_loading(true) {}  // loads from memory
    CArchive(const CArchive&) = delete;
    CArchive& operator=(const CArchive&) = delete;

    bool IsStoring() const { return !m_loading; }
    bool IsLoading() const { return m_loading; }
    /// True once a load met the end or a store failed.
    bool IsShort() const { return m_short; }
    /// What an archive over memory has stored.
    const std::string& Stored() const { return m_stored; }

    // 4 bytes each, 8 of a double, 1 of a character.
    CArchive& operator<<(int v);
    CArchive& operator<<(std::uint32_t v);
    CArchive& operator<<(float v);
    CArchive& operator<<(double v);
    CArchive& operator<<(unsigned char v);
    /// A 32-bit length, then that many GBK bytes.
    CArchive& operator<<(const CString& v);

    CArchive& operator>>(int& v);
    CArchive& operator>>(std::uint32_t& v);
    CArchive& operator>>(float& v);
    CArchive& operator>>(double& v);
    CArchive& operator>>(unsigned char& v);
    CArchive& operator>>(CString& v);

private:
    template <class Bits>
    void Store(Bits bits);
    template <class Bits>
    Bits Load();
    void Write(const void* bytes, std::size_t count);
    bool Read(void* bytes, std::size_t count);

    std::FILE* m_file = nullptr;  // borrowed; null: memory
    std::string_view m_bytes;     // what is left to load; borrowed
    std::string m_stored;
    bool m_loading = false;
    bool m_short = false;
};
