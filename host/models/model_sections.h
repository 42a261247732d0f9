// A model file taken apart into its sections.
#pragma once
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/models/model_format.h"

/// Something wrong in a file: where, and what.
struct ModelFault {
    std::string where;  // "nodes section" and so on
    std::uint64_t byte = 0;
    std::string reason;

    /// "nodes section at byte 96: its checksum does not hold"
    std::string Text() const;
};

enum class SectionState { kWhole, kDamaged, kCut };

struct ModelSection {
    SectionHead head;
    std::uint64_t offset = 0;  // of the head
    std::string_view payload;  // as much as is there
    SectionState state = SectionState::kWhole;
};

/// A model file in memory. The views in the sections point into it.
struct ModelFile {
    std::unique_ptr<char[]> storage;
    std::string_view bytes;
    std::optional<ModelHeader> header;  // when it is whole and of a version that is known
    std::vector<ModelSection> sections;  // those with a whole head, in the order of the file
    std::vector<ModelFault> faults;      // in the order of the file; none: what the file says of itself is true
};

/// Reads the file and takes it apart. Behind a damaged head the next one is looked for, so that a damage costs only
/// the section that it is in. Throws DataFailure when the file can't be read or doesn't begin as a model file does
/// (with `anyStart`, only when it can't be read).
ModelFile ReadModelFile(const std::string& path, bool anyStart = false);

/// The same on bytes at hand. They must outlive the result.
ModelFile TakeApart(std::string_view bytes);
