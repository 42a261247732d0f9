#include "host/models/model_format.h"

#include <algorithm>
#include <bit>

#include "host/models/crc32.h"
#include "model/goujian_type.h"
#include "plates/gj_xing_zhuang_bian.h"

namespace {

void PutLong(std::string& out, std::uint64_t value) {
    PutWord(out, static_cast<std::uint32_t>(value & 0xFFFFFFFF));
    PutWord(out, static_cast<std::uint32_t>(value >> 32));
}

void PutInt(std::string& out, std::int32_t value) { PutWord(out, static_cast<std::uint32_t>(value)); }

std::uint64_t LongAt(std::string_view bytes, std::size_t at) {
    return WordAt(bytes, at) | static_cast<std::uint64_t>(WordAt(bytes, at + 4)) << 32;
}

/// Ends a head with the checksum of what stands before.
std::string Sealed(std::string bytes) {
    PutWord(bytes, Crc32(bytes));
    return bytes;
}

bool SealHolds(std::string_view bytes, std::size_t size) {
    return bytes.size() >= size && Crc32(bytes.substr(0, size - 4)) == WordAt(bytes, size - 4);
}

}  // namespace

int SectionRank(SectionKind kind) {
    const auto found = std::find(kSectionKinds.begin(), kSectionKinds.end(), kind);
    return found == kSectionKinds.end() ? -1 : static_cast<int>(found - kSectionKinds.begin());
}

std::string SectionName(SectionKind kind) {
    static const char* const names[] = {"counters", "nodes", "lines", "plates", "host components", "host data"};
    const int rank = SectionRank(kind);
    return std::string(rank < 0 ? "unknown" : names[rank]) + " section";
}

std::string SectionName(const SectionHead& head) {
    if (head.kind != SectionKind::kHost) return SectionName(head.kind);
    switch (head.type) {
        case GJLX_TEXT: return "texts section";
        case GJLX_POINT: return "points section";
        case GJLX_LINE: return "plain lines section";
        case GJLX_ARC: return "arcs section";
        case GJLX_CIRCLE: return "circles section";
        case GJLX_CIRCLE_RGN: return "discs section";
        case GJLX_POLYGON_RGN: return "polygons section";
        default: return SectionName(head.kind);
    }
}

void PutWord(std::string& out, std::uint32_t value) {
    const char bytes[] = {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8 & 0xFF),
                          static_cast<char>(value >> 16 & 0xFF), static_cast<char>(value >> 24)};
    out.append(bytes, sizeof bytes);
}

std::uint32_t WordAt(std::string_view bytes, std::size_t at) {
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data()) + at;
    return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
           static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

std::int32_t IntAt(std::string_view bytes, std::size_t at) { return static_cast<std::int32_t>(WordAt(bytes, at)); }
float FloatAt(std::string_view bytes, std::size_t at) { return std::bit_cast<float>(WordAt(bytes, at)); }

std::string HeaderBytes(const ModelHeader& header) {
    std::string out(kModelMagic);
    PutWord(out, header.version);
    PutWord(out, kModelHeaderSize);
    for (const std::uint32_t n : {header.nodes, header.lines, header.plates, header.others, header.unit}) PutWord(out, n);
    PutInt(out, header.tolerance);
    PutInt(out, header.currentStorey);
    PutWord(out, header.storeys);
    PutInt(out, header.lowestStorey);
    PutInt(out, header.highestStorey);
    PutWord(out, header.sections);
    PutWord(out, 0);
    PutLong(out, header.fileLength);
    PutWord(out, 0);
    return Sealed(std::move(out));
}

std::optional<ModelHeader> HeaderFrom(std::string_view bytes) {
    if (!SealHolds(bytes, kModelHeaderSize)) return {};
    ModelHeader header;
    header.version = WordAt(bytes, 8);
    header.nodes = WordAt(bytes, 16);
    header.lines = WordAt(bytes, 20);
    header.plates = WordAt(bytes, 24);
    header.others = WordAt(bytes, 28);
    header.unit = WordAt(bytes, 32);
    header.tolerance = IntAt(bytes, 36);
    header.currentStorey = IntAt(bytes, 40);
    header.storeys = WordAt(bytes, 44);
    header.lowestStorey = IntAt(bytes, 48);
    header.highestStorey = IntAt(bytes, 52);
    header.sections = WordAt(bytes, 56);
    header.fileLength = LongAt(bytes, 64);
    return header;
}

std::string HeadBytes(const SectionHead& head) {
    std::string out(kSectionMark);
    PutWord(out, static_cast<std::uint32_t>(head.kind));
    PutWord(out, head.type);
    PutWord(out, head.count);
    PutLong(out, head.length);
    PutWord(out, head.checksum);
    return Sealed(std::move(out));
}

std::optional<SectionHead> HeadFrom(std::string_view bytes) {
    if (!bytes.starts_with(kSectionMark) || !SealHolds(bytes, kSectionHeadSize)) return {};
    SectionHead head;
    head.kind = static_cast<SectionKind>(WordAt(bytes, 4));
    head.type = WordAt(bytes, 8);
    head.count = WordAt(bytes, 12);
    head.length = LongAt(bytes, 16);
    head.checksum = WordAt(bytes, 24);
    return head;
}

void PutRun(std::string& out, const AttributeRun& run) {
    PutWord(out, run.count);
    PutInt(out, run.storey);
    PutWord(out, run.tag);
    PutInt(out, run.fem);
    PutWord(out, run.zBits);
    PutWord(out, run.status);
}

AttributeRun RunAt(std::string_view bytes, std::size_t at) {
    return {WordAt(bytes, at),     IntAt(bytes, at + 4),   WordAt(bytes, at + 8),
            IntAt(bytes, at + 12), WordAt(bytes, at + 16), WordAt(bytes, at + 20)};
}

std::size_t PlateBlockSize(std::string_view bytes) {
    constexpr std::size_t kPlateHead = 12, kSide = 12;
    const auto believable = [](std::int32_t n) { return n >= 0 && n <= CGjXingZhuangBian::kMostParts; };
    if (bytes.size() < kPlateHead) return 0;
    const std::int32_t shapes = IntAt(bytes, 8);
    if (!believable(shapes)) return 0;
    std::size_t at = kPlateHead;
    for (std::int32_t i = 0; i < shapes; ++i) {
        if (bytes.size() - at < 4) return 0;
        const std::int32_t sides = IntAt(bytes, at);
        if (!believable(sides)) return 0;
        at += 4;
        if ((bytes.size() - at) / kSide < static_cast<std::size_t>(sides)) return 0;
        at += kSide * static_cast<std::size_t>(sides);
    }
    return at;
}
