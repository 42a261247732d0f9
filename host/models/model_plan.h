// What of a model file can be built, worked out before any model is touched.
#pragma once
#include <array>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "host/models/model_sections.h"
#include "model/goujian.h"

class ModelHost;

/// One section of nodes, lines or plates.
struct PlannedBlocks {
    std::string_view blocks;         // one behind the other
    std::uint32_t count = 0;
    std::vector<AttributeRun> runs;  // their counts sum up to `count`
    std::vector<bool> dropped;       // those that can't be used; empty: all can
};

struct PlannedHostComponent {
    std::unique_ptr<CGouJianEx> component;
    std::int32_t storey = -1;
};

/// Of one kind of sections.
struct KindTally {
    std::uint32_t sections = 0, whole = 0;  // with a whole head; with all else as well
    std::uint64_t bytes = 0;                // heads included
    std::uint64_t told = 0;                 // components of which their heads tell
    std::uint64_t kept = 0;                 // that can be built
};

struct ModelPlan {
    std::vector<PlannedBlocks> nodes, lines, plates;
    std::vector<PlannedHostComponent> others;
    std::vector<std::pair<unsigned char, std::uint32_t>> counters;  // type byte, highest sequence number
    std::string_view hostData;
    std::uint64_t unresolvedPlates = 0;  // those that name a line which isn't there
    std::array<KindTally, 6> tally{};    // by SectionRank
    // What is wrong within sections whose checksum holds: the first kMostFaults of them. Empty: the file can be opened.
    std::vector<ModelFault> faults;
    std::uint64_t faultCount = 0;

    static constexpr std::size_t kMostFaults = 100;
};

/// Checks everything that the whole sections hold. What can't be used is left out and noted.
ModelPlan PlanModel(const ModelFile& file, const ModelHost& host);
