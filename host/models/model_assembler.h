// The sections of a model file, put one behind the other.
#pragma once
#include <functional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/models/model_format.h"

class CGouJianEx;

/// What a model file keeps of a component beside its block; a count of 1. A selection belongs to the session:
/// a component that came back selected could not be taken out of any.
AttributeRun AttributesOf(const CGouJianEx& component, SectionKind kind);

/// Attributes of components, neighbours with the same ones put together.
class AttributeRuns {
public:
    void Add(const AttributeRun& one);
    std::string Bytes() const;

private:
    std::vector<AttributeRun> m_runs;
};

/// Hands a model file out piece by piece, from the place behind the header on. The header is known in the
/// end.
class ModelAssembler {
public:
    using Out = std::function<void(std::string_view)>;
    explicit ModelAssembler(Out out) : m_out(std::move(out)) {}

    void Section(SectionKind kind, std::uint32_t type, std::size_t count, std::string_view payload);
    void Counters(
        std::span<const std::pair<std::uint32_t, std::uint32_t>> counters);  // type byte, highest number
    void NoteStorey(int storey);                                             // of each component
    /// Fills in what the assembler knows: sections, storeys, length.
    void Complete(ModelHeader& header) const;

private:
    Out m_out;
    std::uint64_t m_length = kModelHeaderSize;
    std::uint32_t m_sections = 0;
    std::set<int> m_storeys;
    int m_lastStorey = 0;  // the last that was entered
};

/// One record of a section of host components.
void PutHostRecord(std::string& payload, std::uint32_t number, std::uint32_t id,
                   const AttributeRun& attributes, std::string_view block);
