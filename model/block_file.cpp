#include "model/block_file.h"

#include <algorithm>
#include <cstring>

namespace {

void WriteRun(std::FILE* f, long count, unsigned char fill) {
    unsigned char piece[4096];
    std::memset(piece, fill, sizeof piece);
    while (count > 0) {
        const auto n = static_cast<std::size_t>(std::min<long>(count, sizeof piece));
        if (std::fwrite(piece, 1, n, f) != n) return;
        count -= static_cast<long>(n);
    }
}

// Bytes of `count` records; 0 unless both are positive.
long Bytes(int count, int size) { return count > 0 && size > 0 ? static_cast<long>(count) * size : 0; }

// The boundary behind a position, one whole block on for a position that is a boundary itself.
long NextBoundary(long position, int count, int size) {
    return (position / size / count + 1) * Bytes(count, size);
}

}  // namespace

int Fill_To_Fixed_Pos(std::FILE* f, long pos, unsigned char fill) {
    const long now = std::ftell(f);
    if (pos < now) return 0;
    WriteRun(f, pos - now, fill);
    return 1;
}

void Fill_To_Next_Block(std::FILE* f, int count, int headerCount, int size) {
    if (Bytes(count, size) == 0) return;
    Fill_To_Fixed_Pos(f, NextBoundary(std::ftell(f), count, size), 0);
    WriteRun(f, Bytes(headerCount, size), 0xFF);
}

int Search_NextBlock_Header(std::FILE* f, int count, int headerCount, int size) {
    if (Bytes(count, size) == 0) return 0;
    std::fseek(f, NextBoundary(std::ftell(f), count, size), SEEK_SET);
    for (long left = Bytes(headerCount, size); left > 0;) {
        unsigned char piece[4096];
        const auto n = static_cast<std::size_t>(std::min<long>(left, sizeof piece));
        if (std::fread(piece, 1, n, f) != n) return 0;
        if (std::any_of(piece, piece + n, [](unsigned char c) { return c != 0xFF; })) return 0;
        left -= static_cast<long>(n);
    }
    return 1;
}
