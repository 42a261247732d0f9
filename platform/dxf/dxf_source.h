// Where the bytes of a drawing come from. Internal.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>

/// A regular file, or bytes in memory, read from front to back.
class DxfByteSource {
public:
    explicit DxfByteSource(std::string_view bytes) : m_memory(bytes), m_bOpen(true) {}
    explicit DxfByteSource(const char* path);
    ~DxfByteSource();
    DxfByteSource(const DxfByteSource&) = delete;
    DxfByteSource& operator=(const DxfByteSource&) = delete;

    bool IsOpen() const { return m_bOpen; }
    /// The next bytes; 0 at the end, or when reading failed, in which case Error is not empty.
    std::size_t Read(char* to, std::size_t bytes);
    const std::string& Error() const { return m_strError; }

private:
    int              m_fd = -1;        // -1: in memory, or not open
    std::string_view m_memory;         // what is left
    bool             m_bOpen = false;
    std::string      m_strError;
};
