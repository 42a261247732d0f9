#include "host/models/journal_replay.h"

#include <algorithm>
#include <map>

#include "host/models/model_assembler.h"

namespace {

/// A component with the bytes of its block, which belong to the base or to a step.
struct Component {
    StoredComponent stored;
    std::string_view block;
};

class Replay {
public:
    explicit Replay(const ModelFile* base) {
        if (!base) return;
        if (base->header) {
            m_header.tolerance = base->header->tolerance;
            m_header.currentStorey = base->header->currentStorey;
        }
        for (const ModelSection& section : base->sections)
            if (section.state == SectionState::kWhole) Take(section);
    }

    void Apply(const JournalStep& step) {
        if (step.whole) {
            m_components.clear();
            m_counters.clear();
            m_hostData = {};
        }
        m_header.tolerance = step.tolerance;
        m_header.currentStorey = step.currentStorey;
        for (const auto& [type, highest] : step.counters) m_counters[type] = highest;
        if (step.hostData) m_hostData = *step.hostData;
        std::size_t at = 0;
        for (const StoredComponent& change : step.changes) {
            m_components.push_back({change, step.blocks.substr(at, change.length)});
            at += change.length;
        }
    }

    std::string File() {
        KeepLast();
        std::string file(kModelHeaderSize, '\0');
        ModelAssembler assembler([&](std::string_view bytes) { file += bytes; });
        const std::vector<std::pair<std::uint32_t, std::uint32_t>> counters(m_counters.begin(),
                                                                            m_counters.end());
        assembler.Counters(counters);
        m_header.nodes = PutAll(assembler, SectionKind::kNodes);
        m_header.lines = PutAll(assembler, SectionKind::kLines);
        m_header.plates = PutAll(assembler, SectionKind::kPlates);
        m_header.others = PutAll(assembler, SectionKind::kHost);
        if (!m_hostData.empty()) assembler.Section(SectionKind::kData, 0, 1, m_hostData);
        assembler.Complete(m_header);
        return file.replace(0, kModelHeaderSize, HeaderBytes(m_header));
    }

private:
    // ---- the base -------------------------------------------------------------------------------------

    void Take(const ModelSection& section) {
        switch (section.head.kind) {
            case SectionKind::kCounters:
                for (std::size_t at = 0; at + 8 <= section.payload.size(); at += 8)
                    m_counters[WordAt(section.payload, at)] = WordAt(section.payload, at + 4);
                break;
            case SectionKind::kNodes:
                TakeBlocks(section, kNodeBlockSize);
                break;
            case SectionKind::kLines:
                TakeBlocks(section, kLineBlockSize);
                break;
            case SectionKind::kPlates:
                TakeBlocks(section, 0);
                break;
            case SectionKind::kHost:
                TakeHostRecords(section);
                break;
            case SectionKind::kData:
                m_hostData = section.payload;
                break;
        }
    }

    void TakeBlocks(const ModelSection& section, std::size_t blockSize) {
        const std::size_t first = m_components.size();
        std::string_view rest = section.payload;
        for (std::uint32_t i = 0; i < section.head.count; ++i) {
            const std::size_t size = blockSize != 0 ? blockSize : PlateBlockSize(rest);
            if (size == 0 || size > rest.size()) return;
            StoredComponent stored;
            stored.kind = section.head.kind;
            stored.number = WordAt(rest, 0);
            stored.id = WordAt(rest, 4);
            m_components.push_back({stored, rest.substr(0, size)});
            rest.remove_prefix(size);
        }
        for (std::size_t at = first; rest.size() >= kAttributeRunSize;
             rest.remove_prefix(kAttributeRunSize)) {
            AttributeRun run = RunAt(rest, 0);
            std::uint32_t left = std::exchange(run.count, 1);
            for (; left > 0 && at < m_components.size(); --left) m_components[at++].stored.attributes = run;
        }
    }

    void TakeHostRecords(const ModelSection& section) {
        std::string_view rest = section.payload;
        for (std::uint32_t i = 0; i < section.head.count && rest.size() >= kHostRecordSize; ++i) {
            StoredComponent stored;
            stored.kind = SectionKind::kHost;
            stored.number = WordAt(rest, 0);
            stored.id = WordAt(rest, 4);
            stored.length = WordAt(rest, 8);
            stored.attributes = {1, IntAt(rest, 12), WordAt(rest, 16), IntAt(rest, 20), 0, WordAt(rest, 24)};
            if (rest.size() - kHostRecordSize < stored.length) return;
            m_components.push_back({stored, rest.substr(kHostRecordSize, stored.length)});
            rest.remove_prefix(kHostRecordSize + stored.length);
        }
    }

    // ---- the end --------------------------------------------------------------------------------------

    /// Of each identity the state that was told last, by ascending identity; none of those that are gone.
    void KeepLast() {
        std::stable_sort(m_components.begin(), m_components.end(),
                         [](const Component& a, const Component& b) { return a.stored.id < b.stored.id; });
        std::size_t kept = 0;
        for (std::size_t i = 0; i < m_components.size(); ++i) {
            const bool last =
                i + 1 == m_components.size() || m_components[i + 1].stored.id != m_components[i].stored.id;
            if (last && m_components[i].stored.kind != SectionKind{}) m_components[kept++] = m_components[i];
        }
        m_components.resize(kept);
    }

    std::uint32_t PutAll(ModelAssembler& assembler, SectionKind kind) {
        std::vector<const Component*> all;
        for (const Component& component : m_components)
            if (component.stored.kind == kind) all.push_back(&component);
        const auto typeOf = [&](std::size_t i) {
            return kind == SectionKind::kHost ? all[i]->stored.id >> 24 : 0;
        };
        for (std::size_t from = 0, to = 0; from < all.size(); from = to) {
            while (to < all.size() && to - from < kMostInSection && typeOf(to) == typeOf(from)) ++to;
            PutSection(assembler, kind, typeOf(from),
                       {all.begin() + static_cast<std::ptrdiff_t>(from), to - from});
        }
        return static_cast<std::uint32_t>(all.size());
    }

    static void PutSection(ModelAssembler& assembler, SectionKind kind, std::uint32_t type,
                           std::span<const Component* const> components) {
        std::string payload;
        AttributeRuns runs;
        for (const Component* component : components) {
            const StoredComponent& stored = component->stored;
            assembler.NoteStorey(stored.attributes.storey);
            if (kind == SectionKind::kHost) {
                PutHostRecord(payload, stored.number, stored.id, stored.attributes, component->block);
            } else {
                payload += component->block;
                runs.Add(stored.attributes);
            }
        }
        if (kind != SectionKind::kHost) payload += runs.Bytes();
        assembler.Section(kind, type, components.size(), payload);
    }

    ModelHeader m_header;
    std::map<std::uint32_t, std::uint32_t> m_counters;
    std::string_view m_hostData;
    std::vector<Component> m_components;  // in the order in which they were told
};

}  // namespace

std::string ReplaySteps(const ModelFile* base, const std::vector<JournalStep>& steps) {
    Replay replay(base);
    for (const JournalStep& step : steps) replay.Apply(step);
    return replay.File();
}
