// The bytes of a journal: what has happened to a model since it was last saved.
//
// All numbers are little-endian.
//
//   header
//      0  magic 89 54 56 4A 0D 0A 1A 0A, version, header's length with its path
//     16  base: 0 no file, 1 a model file, 2 one that the first step makes void; CRC-32 of that file; its
//         length, 64 bits
//     32  length of the model's path, the path in UTF-8 (none: the model has no name yet)
//         CRC-32 of all bytes before
//
//   then the steps, each written at once: a head of 32 bytes and its payload
//      0  "STEP", number from 1 on, flags (1: what was before is void), 0
//     16  length of the payload, 64 bits
//     24  CRC-32 of the payload, CRC-32 of the 28 bytes before
//
//   payload
//      net tolerance, current storey
//      number of counters; for each its type byte and highest sequence number
//      1 when the host's data has changed, else 0; then its length; the data
//      number of changes; for each 36 bytes: identity, kind of its section in a model file (0: it is gone),
//      number,
//        storey, tag, number in an analysis, z, status, length of its block
//      the blocks, one behind the other
//
// A step tells what is so when it ends, of each component that it touched. So undo and redo are steps like
// any other, and nobody needs the history to put a model together.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/models/model_format.h"

inline constexpr std::uint32_t kJournalVersion = 1;
inline constexpr std::string_view kJournalMagic("\x89TVJ\r\n\x1A\n", 8);
inline constexpr std::string_view kStepMark = "STEP";
inline constexpr std::size_t kStepHeadSize = 32;
inline constexpr std::size_t kChangeSize = 36;

/// The model file on which a journal stands.
struct JournalBase {
    bool file = false;  // false: there was none, the first step holds the whole model
    std::uint32_t checksum = 0;
    std::uint64_t length = 0;

    bool operator==(const JournalBase&) const = default;
};

struct JournalHeader {
    JournalBase base;        // the model file as it was
    bool whole = false;      // the first step holds the whole model: the file is not needed
    std::string modelPath;   // empty for a model without a name
    std::size_t length = 0;  // of the header
};

/// A component as it is after a step.
struct StoredComponent {
    std::uint32_t id = 0;
    SectionKind kind{};  // 0: it is gone
    std::uint32_t number = 0;
    AttributeRun attributes;
    std::uint32_t length = 0;  // of its block
};

struct JournalStep {
    std::uint32_t number = 0;
    bool whole = false;  // what was before is void
    std::int32_t tolerance = 50;
    std::int32_t currentStorey = -1;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> counters;  // type byte, highest sequence number
    std::optional<std::string_view> hostData;                       // when it has changed
    std::vector<StoredComponent> changes;
    std::string_view blocks;  // theirs, one behind the other; borrowed
};

std::string JournalHeaderBytes(const JournalHeader& header);
/// Nothing unless the bytes begin with a whole header.
std::optional<JournalHeader> JournalHeaderFrom(std::string_view bytes);

std::string StepBytes(const JournalStep& step);

/// What of a journal can be read. The views point into its bytes.
struct JournalContent {
    std::optional<JournalHeader> header;
    std::vector<JournalStep> steps;  // from the first to the last before anything is wrong
    std::size_t length = 0;          // of header and these steps
    std::size_t lost = 0;            // whole steps behind a damage
    bool torn = false;               // something stands behind them that is no whole step
};
JournalContent ReadJournal(std::string_view bytes);
