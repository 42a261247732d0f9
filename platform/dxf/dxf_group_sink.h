// Writes the groups of a text DXF file. Internal.
#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

/// Formats groups into a buffer and hands that to a file. Errors stick: what comes after one is thrown away, and
/// Finish tells it. Lines end as in the system that drawings come from, with return and newline.
class DxfGroupSink {
public:
    explicit DxfGroupSink(const std::string& path);  // made anew, or emptied
    ~DxfGroupSink();
    DxfGroupSink(const DxfGroupSink&) = delete;
    DxfGroupSink& operator=(const DxfGroupSink&) = delete;

    void Text(int code, std::string_view bytes);  // already in the file's code page, without line ends
    void Integer(int code, std::int64_t value);
    void Handle(int code, std::uint32_t value);  // hexadecimal
    /// With a point, without exponent, as few digits as tell the number from all others of its kind.
    void Real(int code, double value);
    void Real(int code, float value);

    /// Writes what is left and closes. Empty when all is in the file, else the reason.
    std::string Finish();

private:
    char* Begin(int code, std::size_t room);  // writes the code; room for the value follows
    void End(char* p);                        // the value ends before p
    void Flush();
    template <class T>
    void AnyReal(int code, T value);

    static constexpr std::size_t kBuffer = 1 << 18;
    int m_fd = -1;
    int m_error = 0;                   // errno of the first failure
    std::unique_ptr<char[]> m_buffer;
    char* m_p;                         // next free byte of the buffer
};
