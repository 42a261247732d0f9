#include "platform/dxf/dxf_group_sink.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>

#include "platform/whole_file.h"

namespace {

constexpr std::size_t kNumberRoom = 400;  // the smallest double without an exponent has over 340 characters

}  // namespace

DxfGroupSink::DxfGroupSink(const std::string& path)
    : m_fd(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)),
      m_buffer(std::make_unique_for_overwrite<char[]>(kBuffer)),
      m_p(m_buffer.get()) {
    if (m_fd < 0) m_error = errno;
}

DxfGroupSink::~DxfGroupSink() {
    if (m_fd >= 0) ::close(m_fd);
}

void DxfGroupSink::Flush() {
    const char* from = m_buffer.get();
    while (m_error == 0 && from < m_p) {
        const ssize_t n = ::write(m_fd, from, static_cast<std::size_t>(m_p - from));
        if (n > 0) from += n;
        else if (n == 0 || errno != EINTR) m_error = n == 0 ? EIO : errno;
    }
    m_p = m_buffer.get();
}

std::string DxfGroupSink::Finish() {
    Flush();
    if (m_fd >= 0 && ::close(m_fd) != 0 && m_error == 0) m_error = errno;
    m_fd = -1;
    return m_error == 0 ? "" : ErrorReason(m_error);
}

char* DxfGroupSink::Begin(int code, std::size_t room) {
    constexpr std::size_t kCodeRoom = 16;  // of the code and both line ends
    if (m_buffer.get() + kBuffer - m_p < static_cast<std::ptrdiff_t>(room + kCodeRoom)) Flush();
    char* p = m_p;
    if (code < 100) *p++ = ' ';
    if (code < 10) *p++ = ' ';
    p = std::to_chars(p, p + 8, code).ptr;
    *p++ = '\r';
    *p++ = '\n';
    return p;
}

void DxfGroupSink::End(char* p) {
    *p++ = '\r';
    *p++ = '\n';
    m_p = p;
}

void DxfGroupSink::Text(int code, std::string_view bytes) {
    constexpr std::size_t kPiece = kBuffer / 2;
    char* p = Begin(code, std::min(bytes.size(), kPiece));
    while (bytes.size() > kPiece) {
        std::memcpy(p, bytes.data(), kPiece);
        bytes.remove_prefix(kPiece);
        m_p = p + kPiece;
        Flush();
        p = m_p;
    }
    std::memcpy(p, bytes.data(), bytes.size());
    End(p + bytes.size());
}

void DxfGroupSink::Integer(int code, std::int64_t value) {
    char* p = Begin(code, kNumberRoom);
    End(std::to_chars(p, p + kNumberRoom, value).ptr);
}

void DxfGroupSink::Handle(int code, std::uint32_t value) {
    char* p = Begin(code, kNumberRoom);
    char* const end = std::to_chars(p, p + kNumberRoom, value, 16).ptr;
    for (; p < end; ++p)
        if (*p >= 'a') *p = static_cast<char>(*p - ('a' - 'A'));
    End(end);
}

template <class T>
void DxfGroupSink::AnyReal(int code, T value) {
    constexpr T kAllDigits = 1 << 24;  // whole numbers below are exact in either type
    char* p = Begin(code, kNumberRoom);
    if (value == std::trunc(value) &&
        std::abs(value) < kAllDigits) {  // by far the most; also turns -0 into 0
        p = std::to_chars(p, p + kNumberRoom, static_cast<int>(value)).ptr;
    } else {
        char* const from = p;
        p = std::to_chars(p, p + kNumberRoom, value, std::chars_format::fixed).ptr;
        if (std::memchr(from, '.', static_cast<std::size_t>(p - from))) return End(p);
    }
    *p++ = '.';
    *p++ = '0';
    End(p);
}

void DxfGroupSink::Real(int code, double value) { AnyReal(code, value); }
void DxfGroupSink::Real(int code, float value) { AnyReal(code, value); }
