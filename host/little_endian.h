// Whole numbers in binary files, little-endian.
#pragma once
#include <cstddef>
#include <cstdio>

template <class Word>
void PutLittleEndian(std::FILE* file, Word word) {
    unsigned char bytes[sizeof word];
    for (std::size_t i = 0; i < sizeof word; ++i) bytes[i] = static_cast<unsigned char>(word >> (8 * i));
    std::fwrite(bytes, 1, sizeof bytes, file);
}

/// False at the end of the file; the word is then as it was.
template <class Word>
bool TakeLittleEndian(std::FILE* file, Word& word) {
    unsigned char bytes[sizeof word];
    if (std::fread(bytes, 1, sizeof bytes, file) != sizeof bytes) return false;
    word = 0;
    for (std::size_t i = 0; i < sizeof word; ++i) word |= static_cast<Word>(bytes[i]) << (8 * i);
    return true;
}
