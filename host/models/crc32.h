// CRC-32, the checksum of the sections of a model file.
#pragma once
#include <cstdint>
#include <string_view>

/// The CRC-32 of zip and PNG (polynomial 0xEDB88320, reflected), 8 bytes at a time. Texts in pieces: hand the result
/// for the first piece in with the next.
std::uint32_t Crc32(std::string_view bytes, std::uint32_t before = 0);
