// The bytes of a model file (.tvo).
//
// All numbers are little-endian; lengths and offsets are bytes.
//
//   header, 80 bytes
//      0  magic 89 54 56 4F 0D 0A 1A 0A    a copy made as a text breaks it
//      8  version, header's length
//     16  numbers of nodes, lines, plates and other components
//     32  unit (4: millimetre), net tolerance, current storey, number of storeys, lowest, highest
//     56  number of sections, 0
//     64  length of the file, 64 bits
//     72  0, CRC-32 of the 76 bytes before
//
//   then the sections, each a head of 32 bytes and its payload
//      0  "TVOS", kind, type byte of host components (else 0), number of components or entries
//     16  length of the payload, 64 bits
//     24  CRC-32 of the payload, CRC-32 of the 28 bytes before
//
//   kinds, in this order; of COUN there is one, of DATA at most one
//      COUN  per type byte in use: type, highest sequence number handed out; ascending
//      NODE  node blocks, 16 bytes each, then attribute runs
//      LINE  line blocks, 32 bytes each, then attribute runs
//      PLAT  plate blocks, then attribute runs
//      HOST  components of one type, texts and graphics or of the host: number, identity, length, attributes (16), the bytes of its block
//      DATA  what else the host keeps in a model
//
// The blocks are those that the components write themselves. What these leave out stands in runs of neighbours that
// have it in common (24 bytes): how many, storey, tag, number in an analysis, z (nodes), status. Components stand in
// ascending identity throughout, so that the same model gives the same bytes. Long rows of them are cut into sections
// of kMostInSection, so that a damage costs no more than that.
#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

inline constexpr std::size_t kModelHeaderSize = 80;
inline constexpr std::size_t kSectionHeadSize = 32;
inline constexpr std::size_t kAttributeRunSize = 24;
inline constexpr std::size_t kNodeBlockSize = 16;
inline constexpr std::size_t kLineBlockSize = 32;
inline constexpr std::size_t kHostRecordSize = 28;  // without its bytes
inline constexpr std::uint32_t kModelVersion = 1;
inline constexpr std::uint32_t kUnitMillimetre = 4;
inline constexpr std::uint32_t kMostInSection = 16384;
inline constexpr std::string_view kModelMagic("\x89TVO\r\n\x1A\n", 8);
inline constexpr std::string_view kSectionMark = "TVOS";

constexpr std::uint32_t FourLetters(std::string_view text) {
    std::uint32_t word = 0;
    for (std::size_t i = 0; i < 4; ++i) word |= static_cast<std::uint32_t>(static_cast<unsigned char>(text[i])) << (8 * i);
    return word;
}

enum class SectionKind : std::uint32_t {
    kCounters = FourLetters("COUN"),
    kNodes = FourLetters("NODE"),
    kLines = FourLetters("LINE"),
    kPlates = FourLetters("PLAT"),
    kHost = FourLetters("HOST"),
    kData = FourLetters("DATA"),
};

inline constexpr std::array kSectionKinds{SectionKind::kCounters, SectionKind::kNodes, SectionKind::kLines,
                                          SectionKind::kPlates,   SectionKind::kHost,  SectionKind::kData};

/// Place in the order of kinds; -1 for a kind that is none.
int SectionRank(SectionKind kind);
/// "nodes section" and so on, for messages.
std::string SectionName(SectionKind kind);

struct ModelHeader {
    std::uint32_t version = kModelVersion;
    std::uint32_t nodes = 0, lines = 0, plates = 0, others = 0;
    std::uint32_t unit = kUnitMillimetre;
    std::int32_t tolerance = 50;
    std::int32_t currentStorey = -1;
    std::uint32_t storeys = 0;  // different ones among all components
    std::int32_t lowestStorey = 0, highestStorey = 0;
    std::uint32_t sections = 0;
    std::uint64_t fileLength = 0;
};

struct SectionHead {
    SectionKind kind = SectionKind::kData;
    std::uint32_t type = 0;
    std::uint32_t count = 0;
    std::uint64_t length = 0;
    std::uint32_t checksum = 0;
};

/// The same with the name of the library's own types of components, "texts section" among them.
std::string SectionName(const SectionHead& head);

/// What neighbouring components have in common besides their blocks.
struct AttributeRun {
    std::uint32_t count = 0;
    std::int32_t storey = -1;
    std::uint32_t tag = 0;
    std::int32_t fem = 0;
    std::uint32_t zBits = 0;  // of a 32-bit float
    std::uint32_t status = 0;
};

// Writers append; readers expect that the bytes are there.
void PutWord(std::string& out, std::uint32_t value);
std::uint32_t WordAt(std::string_view bytes, std::size_t at);
std::int32_t IntAt(std::string_view bytes, std::size_t at);
float FloatAt(std::string_view bytes, std::size_t at);

std::string HeaderBytes(const ModelHeader& header);
/// Nothing unless the checksum holds. The magic is not looked at.
std::optional<ModelHeader> HeaderFrom(std::string_view bytes);
std::string HeadBytes(const SectionHead& head);
/// Nothing unless mark and checksum hold.
std::optional<SectionHead> HeadFrom(std::string_view bytes);
void PutRun(std::string& out, const AttributeRun& run);
AttributeRun RunAt(std::string_view bytes, std::size_t at);

/// Length of the plate block at the start of the bytes; 0 when it isn't whole or has an impossible count.
std::size_t PlateBlockSize(std::string_view bytes);
