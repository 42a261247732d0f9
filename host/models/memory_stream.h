// Streams in memory, since the components read and write their blocks from and to streams.
#pragma once
#include <cstdio>
#include <cstdlib>
#include <new>
#include <string_view>

/// A stream that is written to.
class MemoryStream {
public:
    MemoryStream() : m_stream(::open_memstream(&m_bytes, &m_size)) {
        if (!m_stream) throw std::bad_alloc();
    }
    ~MemoryStream() {
        std::fclose(m_stream);
        std::free(m_bytes);
    }
    MemoryStream(const MemoryStream&) = delete;
    MemoryStream& operator=(const MemoryStream&) = delete;

    std::FILE* Stream() { return m_stream; }
    void Put(std::string_view bytes) { std::fwrite(bytes.data(), 1, bytes.size(), m_stream); }
    std::size_t Size() { return static_cast<std::size_t>(std::ftell(m_stream)); }
    /// All that was written, good until more is.
    std::string_view Bytes() {
        if (std::fflush(m_stream) != 0 || std::ferror(m_stream)) throw std::bad_alloc();
        return {m_bytes, m_size};
    }

private:
    char* m_bytes = nullptr;
    std::size_t m_size = 0;
    std::FILE* m_stream;
};
