#include "platform/archive.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "platform/gbk.h"
#include "platform/string.h"

void CArchive::Write(const void* bytes, std::size_t count) {
    if (m_loading) {
        m_short = true;  // an archive goes one way
    } else if (!m_file) {
        m_stored.append(static_cast<const char*>(bytes), count);
    } else if (std::fwrite(bytes, 1, count, m_file) != count) {
        m_short = true;
    }
}

bool CArchive::Read(void* bytes, std::size_t count) {
    if (!m_loading) m_short = true;
    if (m_short) return false;
    if (m_file) {
        m_short = std::fread(bytes, 1, count, m_file) != count;
    } else if (m_bytes.size() < count) {
        m_short = true;
    } else {
        std::memcpy(bytes, m_bytes.data(), count);
        m_bytes.remove_prefix(count);
    }
    return !m_short;
}

// Byte by byte, so that the form is little-endian on any machine.
template <class Bits>
void CArchive::Store(Bits bits) {
    unsigned char bytes[sizeof(Bits)];
    for (std::size_t i = 0; i < sizeof bytes; ++i)
        bytes[i] = static_cast<unsigned char>(bits >> (8 * i) & 0xFF);
    Write(bytes, sizeof bytes);
}

template <class Bits>
Bits CArchive::Load() {
    unsigned char bytes[sizeof(Bits)];
    if (!Read(bytes, sizeof bytes)) return 0;
    Bits bits = 0;
    for (std::size_t i = sizeof bytes; i-- > 0;) bits = static_cast<Bits>(bits << 8 | bytes[i]);
    return bits;
}

CArchive& CArchive::operator<<(int v) { return *this << static_cast<std::uint32_t>(v); }
CArchive& CArchive::operator<<(std::uint32_t v) {
    Store(v);
    return *this;
}
CArchive& CArchive::operator<<(float v) { return *this << std::bit_cast<std::uint32_t>(v); }
CArchive& CArchive::operator<<(double v) {
    Store(std::bit_cast<std::uint64_t>(v));
    return *this;
}
CArchive& CArchive::operator<<(unsigned char v) {
    Write(&v, 1);
    return *this;
}
CArchive& CArchive::operator<<(const CString& v) {
    const std::string gbk = Utf8ToGbk(v.View());
    *this << static_cast<std::uint32_t>(gbk.size());
    Write(gbk.data(), gbk.size());
    return *this;
}

CArchive& CArchive::operator>>(int& v) {
    v = static_cast<int>(Load<std::uint32_t>());
    return *this;
}
CArchive& CArchive::operator>>(std::uint32_t& v) {
    v = Load<std::uint32_t>();
    return *this;
}
CArchive& CArchive::operator>>(float& v) {
    v = std::bit_cast<float>(Load<std::uint32_t>());
    return *this;
}
CArchive& CArchive::operator>>(double& v) {
    v = std::bit_cast<double>(Load<std::uint64_t>());
    return *this;
}
CArchive& CArchive::operator>>(unsigned char& v) {
    if (!Read(&v, 1)) v = 0;
    return *this;
}
CArchive& CArchive::operator>>(CString& v) {
    int left = 0;
    *this >> left;
    // In pieces: the length is the file's word, and memory is taken only for bytes that are there.
    std::string gbk;
    for (char piece[4096]; left > 0;) {
        const std::size_t n = std::min(static_cast<std::size_t>(left), sizeof piece);
        if (!Read(piece, n)) {
            gbk.clear();
            break;
        }
        gbk.append(piece, n);
        left -= static_cast<int>(n);
    }
    v = CString(GbkToUtf8(gbk));
    return *this;
}
