#include "host/models/crc32.h"

#include <array>
#include <cstddef>

namespace {

using Table = std::array<std::array<std::uint32_t, 256>, 8>;

// Row 0 takes one byte on; row k does so with k zero bytes behind it.
constexpr Table MakeTable() {
    Table table{};
    for (std::uint32_t i = 0; i < 256; ++i) {
        std::uint32_t c = i;
        for (int bit = 0; bit < 8; ++bit) c = (c >> 1) ^ (0xEDB88320u & (0u - (c & 1)));
        table[0][i] = c;
    }
    for (std::size_t row = 1; row < 8; ++row)
        for (std::size_t i = 0; i < 256; ++i)
            table[row][i] = (table[row - 1][i] >> 8) ^ table[0][table[row - 1][i] & 0xFF];
    return table;
}

constexpr Table kTable = MakeTable();

std::uint32_t Word(const unsigned char* p) {
    return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
           static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

}  // namespace

std::uint32_t Crc32(std::string_view bytes, std::uint32_t before) {
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    std::size_t left = bytes.size();
    std::uint32_t c = ~before;
    for (; left >= 8; left -= 8, p += 8) {
        const std::uint32_t a = Word(p) ^ c, b = Word(p + 4);
        c = kTable[7][a & 0xFF] ^ kTable[6][a >> 8 & 0xFF] ^ kTable[5][a >> 16 & 0xFF] ^ kTable[4][a >> 24] ^
            kTable[3][b & 0xFF] ^ kTable[2][b >> 8 & 0xFF] ^ kTable[1][b >> 16 & 0xFF] ^ kTable[0][b >> 24];
    }
    for (; left > 0; --left, ++p) c = (c >> 8) ^ kTable[0][(c ^ *p) & 0xFF];
    return ~c;
}
