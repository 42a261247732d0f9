#include "host/models/model_plan.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "host/models/model_host.h"
#include "model/goujian_type.h"

namespace {

constexpr float kFarthest = 1e15f;  // squares of distances are still floats
constexpr float kWidestBulge = 360.0f;
constexpr int kLargestTolerance = 1000000;  // mm

bool IsPlace(float v) { return std::fabs(v) <= kFarthest; }  // false for NaN as well

std::string Shown(std::uint32_t id) { return std::to_string(id); }

/// Identities in ascending order.
class IdentitySet {
public:
    void Add(std::uint32_t id) { m_ids.push_back(id); }
    bool Has(std::uint32_t id) const {
        const auto at = std::lower_bound(m_ids.begin(), m_ids.end(), id);
        return at != m_ids.end() && *at == id;
    }
    std::uint32_t Last() const { return m_ids.empty() ? 0 : m_ids.back(); }

private:
    std::vector<std::uint32_t> m_ids;
};

class Planner {
public:
    Planner(const ModelFile& file, const ModelHost& host) : m_file(file), m_host(host) {}

    ModelPlan Plan() {
        CheckHeader();
        int rank = 0;
        for (const ModelSection& section : m_file.sections) {
            m_section = &section;
            const int r = SectionRank(section.head.kind);
            if (r < 0) {
                Fault(section.offset, "its kind is not known here");
                continue;
            }
            KindTally& tally = m_plan.tally[static_cast<std::size_t>(r)];
            ++tally.sections;
            tally.bytes += kSectionHeadSize + section.payload.size();
            tally.told += section.head.count;
            if (section.state != SectionState::kWhole) continue;
            if (r < rank) Fault(section.offset, "it stands behind a section that it should stand before");
            rank = std::max(rank, r);
            m_tally = &tally;
            if (Take()) ++tally.whole;
        }
        CheckCounters();
        return std::move(m_plan);
    }

private:
    std::string_view Payload() const { return m_section->payload; }
    std::uint32_t Count() const { return m_section->head.count; }
    std::uint64_t ByteOf(std::size_t at) const { return m_section->offset + kSectionHeadSize + at; }

    /// Always false, for those who give up with it.
    bool Fault(std::uint64_t byte, std::string reason) {
        Fault({SectionName(m_section->head), byte, std::move(reason)});
        return false;
    }
    void Fault(ModelFault fault) {
        if (m_plan.faults.size() < ModelPlan::kMostFaults) m_plan.faults.push_back(std::move(fault));
        ++m_plan.faultCount;
    }

    void CheckHeader() {
        if (!m_file.header) return;
        const ModelHeader& header = *m_file.header;
        if (header.unit != kUnitMillimetre)
            Fault({"header", 32, "unit " + std::to_string(header.unit) + " is not known here"});
        if (header.tolerance < 1 || header.tolerance > kLargestTolerance)
            Fault({"header", 36, "a net tolerance of " + std::to_string(header.tolerance)});
        if (m_file.sections.empty() || m_file.sections[0].head.kind != SectionKind::kCounters)
            Fault({"header", kModelHeaderSize, "no counters section stands behind it"});
    }

    bool Take() {
        switch (m_section->head.kind) {
            case SectionKind::kCounters: return TakeCounters();
            case SectionKind::kNodes: return TakeBlocks(m_plan.nodes, kNodeBlockSize);
            case SectionKind::kLines: return TakeBlocks(m_plan.lines, kLineBlockSize);
            case SectionKind::kPlates: return TakeBlocks(m_plan.plates, 0);
            case SectionKind::kHost: return TakeHostComponents();
            default: return TakeHostData();
        }
    }

    bool TakeCounters() {
        if (!m_plan.counters.empty() || m_tally->whole > 0) return Fault(m_section->offset, "there is one already");
        if (Payload().size() != std::size_t{8} * Count()) return Fault(m_section->offset, "its length is wrong");
        for (std::size_t at = 0; at < Payload().size(); at += 8) {
            const std::uint32_t type = WordAt(Payload(), at);
            if (type == 0 || type >= kTypeCount || (!m_plan.counters.empty() && type <= m_plan.counters.back().first)) {
                m_plan.counters.clear();
                return Fault(ByteOf(at), "type byte " + std::to_string(type) + " is out of place");
            }
            m_plan.counters.emplace_back(static_cast<unsigned char>(type), WordAt(Payload(), at + 4));
        }
        m_countersAt = m_section->offset;
        m_tally->kept += Count();
        return true;
    }

    // ---- nodes, lines and plates: blocks, then runs ----------------------------------------------------

    bool TakeBlocks(std::vector<PlannedBlocks>& out, std::size_t blockSize) {
        PlannedBlocks planned;
        planned.count = Count();
        std::size_t size = 0;
        if (blockSize != 0) {
            if (Payload().size() / blockSize < Count()) return Fault(m_section->offset, "it is too short for its count");
            size = blockSize * Count();
        } else {
            for (std::uint32_t i = 0; i < Count(); ++i) {
                const std::size_t plate = PlateBlockSize(Payload().substr(size));
                if (plate == 0) return Fault(ByteOf(size), "a plate with impossible counts");
                size += plate;
            }
        }
        planned.blocks = Payload().substr(0, size);
        if (!TakeRuns(size, planned)) return false;
        std::size_t at = 0;
        for (std::uint32_t i = 0; i < Count(); ++i) {
            const std::size_t next = blockSize ? blockSize : PlateBlockSize(planned.blocks.substr(at));
            if (CheckBlock(planned.blocks.substr(at, next), at)) {
                ++m_tally->kept;
            } else {
                planned.dropped.resize(Count(), false);
                planned.dropped[i] = true;
            }
            at += next;
        }
        out.push_back(std::move(planned));
        return true;
    }

    bool TakeRuns(std::size_t at, PlannedBlocks& planned) {
        std::uint64_t sum = 0;
        if ((Payload().size() - at) % kAttributeRunSize != 0) return Fault(m_section->offset, "its length is wrong");
        for (; at < Payload().size(); at += kAttributeRunSize) {
            const AttributeRun run = RunAt(Payload(), at);
            if (run.status != GJ_STATUS_NORMAL && run.status != GJ_STATUS_HIDDEN)
                return Fault(ByteOf(at), "status " + std::to_string(run.status));
            if (run.count == 0) return Fault(ByteOf(at), "attributes of nothing");
            sum += run.count;
            planned.runs.push_back(run);
        }
        return sum == Count() || Fault(m_section->offset, "its attributes are of another count");
    }

    bool CheckBlock(std::string_view block, std::size_t at) {
        const std::uint32_t id = WordAt(block, 4);
        switch (m_section->head.kind) {
            case SectionKind::kNodes:
                return CheckIdentity(m_nodes, id, GJLX_NET_NODE, at) && CheckNode(block, at) && Enter(m_nodes, id);
            case SectionKind::kLines:
                return CheckIdentity(m_lines, id, GJLX_NET_LINE, at) && CheckLine(block, at) && Enter(m_lines, id);
            default: return CheckIdentity(m_plates, id, GJLX_MIAN, at) && CheckPlate(block) && Enter(m_plates, id);
        }
    }

    bool Enter(IdentitySet& set, std::uint32_t id) {
        set.Add(id);
        std::uint32_t& highest = m_highest[id >> 24];
        highest = std::max(highest, id & 0xFFFFFF);
        return true;
    }

    bool CheckIdentity(const IdentitySet& set, std::uint32_t id, unsigned char ownType, std::size_t at) {
        const auto type = static_cast<unsigned char>(id >> 24);
        const bool hosts = (type >= 11 && type <= 15) || (type >= 17 && type <= 254);
        if ((type != ownType && !hosts) || (id & 0xFFFFFF) == 0)
            return Fault(ByteOf(at), "identity " + Shown(id) + " has type byte " + std::to_string(type) +
                                         ((id & 0xFFFFFF) == 0 ? " and no number" : ", which is wrong here"));
        const SectionKind kind = m_section->head.kind;
        if (m_kindOf[type] != SectionKind{} && m_kindOf[type] != kind)
            return Fault(ByteOf(at), "identity " + Shown(id) + " has the type byte of the " + SectionName(m_kindOf[type]));
        m_kindOf[type] = kind;
        if (id == set.Last()) return Fault(ByteOf(at), "identity " + Shown(id) + " stands there twice");
        if (id < set.Last()) return Fault(ByteOf(at), "identity " + Shown(id) + " is out of order");
        return true;
    }

    bool CheckNode(std::string_view block, std::size_t at) {
        if (IsPlace(FloatAt(block, 8)) && IsPlace(FloatAt(block, 12))) return true;
        char text[96];
        std::snprintf(text, sizeof text, "node %u lies at (%g, %g)", WordAt(block, 4),
                      static_cast<double>(FloatAt(block, 8)), static_cast<double>(FloatAt(block, 12)));
        return Fault(ByteOf(at), text);
    }

    bool CheckLine(std::string_view block, std::size_t at) {
        const std::string line = "line " + Shown(WordAt(block, 4));
        const std::int32_t arc = IntAt(block, 8);
        if (arc != 0 && arc != 1) return Fault(ByteOf(at), line + " is of kind " + std::to_string(arc));
        if (!(std::fabs(FloatAt(block, 28)) <= kWidestBulge)) return Fault(ByteOf(at), line + " has a bulge that is none");
        for (const std::size_t end : {std::size_t{16}, std::size_t{24}})
            if (!m_nodes.Has(WordAt(block, end)))
                return Fault(ByteOf(at), line + " ends at node " + Shown(WordAt(block, end)) + ", which is not there");
        return true;
    }

    // A plate whose lines are gone is no damage of the file. It is counted and left out.
    bool CheckPlate(std::string_view block) {
        const std::int32_t shapes = IntAt(block, 8);
        std::size_t at = 12;
        for (std::int32_t shape = 0; shape < shapes; ++shape) {
            std::int32_t sides = IntAt(block, at);
            for (at += 4; sides > 0; --sides, at += 12) {
                if (m_lines.Has(WordAt(block, at + 4))) continue;
                ++m_plan.unresolvedPlates;
                return false;
            }
        }
        return true;
    }

    // ---- the host's --------------------------------------------------------------------------------------

    bool TakeHostComponents() {
        const auto type = static_cast<unsigned char>(m_section->head.type & 0xFF);
        if (m_section->head.type >= kTypeCount || !m_host.Make(type))
            return Fault(m_section->offset, "components of type " + std::to_string(m_section->head.type) + " are not known here");
        std::size_t at = 0;
        for (std::uint32_t i = 0; i < Count(); ++i) {
            if (Payload().size() - at < kHostRecordSize) return Fault(ByteOf(at), "it ends within a component");
            const std::size_t length = WordAt(Payload(), at + 8);
            if (Payload().size() - at - kHostRecordSize < length) return Fault(ByteOf(at), "it ends within a component");
            TakeHostComponent(type, at, length);
            at += kHostRecordSize + length;
        }
        return at == Payload().size() || Fault(ByteOf(at), "more stands there than components");
    }

    void TakeHostComponent(unsigned char type, std::size_t at, std::size_t length) {
        const std::string_view record = Payload().substr(at, kHostRecordSize);
        const std::uint32_t id = WordAt(record, 4), status = WordAt(record, 24);
        if (id >> 24 != type) {
            Fault(ByteOf(at), "identity " + Shown(id) + " is of another type");
            return;
        }
        if (!CheckIdentity(m_others, id, type, at)) return;
        PlannedHostComponent planned{m_host.Make(type), IntAt(record, 12)};
        CGouJianEx& component = *planned.component;
        const std::string_view bytes = Payload().substr(at + kHostRecordSize, length);
        bool read = false;
        if (length > 0) {
            std::FILE* stream = ::fmemopen(const_cast<char*>(bytes.data()), length, "r");  // read only
            read = stream && m_host.Read(component, stream) != 0;
            if (stream) std::fclose(stream);
        }
        if (!read || (status != GJ_STATUS_NORMAL && status != GJ_STATUS_HIDDEN)) {
            Fault(ByteOf(at), "component " + Shown(id) + " can't be read");
            return;
        }
        component.set_m_dwGouJianNO(WordAt(record, 0));
        component.set_m_dwGouJianID(id);
        component.m_dwTag = WordAt(record, 16);
        component.m_nFEM_ID = IntAt(record, 20);
        component.set_m_byteStatus(static_cast<unsigned char>(status));
        Enter(m_others, id);
        ++m_tally->kept;
        m_plan.others.push_back(std::move(planned));
    }

    bool TakeHostData() {
        if (!m_plan.hostData.empty()) return Fault(m_section->offset, "there is one already");
        m_plan.hostData = Payload();
        m_tally->kept += Count();
        return true;
    }

    // ---- counters ----------------------------------------------------------------------------------------

    // A counter behind its identities would hand one out a second time.
    void CheckCounters() {
        for (std::size_t type = 1; type < m_highest.size(); ++type) {
            if (m_highest[type] == 0) continue;
            const auto found = std::find_if(m_plan.counters.begin(), m_plan.counters.end(),
                                            [&](const auto& counter) { return counter.first == type; });
            if (found != m_plan.counters.end() && found->second >= m_highest[type]) continue;
            if (m_tally && m_plan.tally[0].whole > 0)
                Fault({SectionName(SectionKind::kCounters), m_countersAt,
                       "the counter of type " + std::to_string(type) + " lies below " + std::to_string(m_highest[type])});
            if (found != m_plan.counters.end()) found->second = m_highest[type];
        }
    }

    const ModelFile& m_file;
    const ModelHost& m_host;
    const ModelSection* m_section = nullptr;  // at hand
    KindTally* m_tally = nullptr;             // of its kind
    IdentitySet m_nodes, m_lines, m_plates, m_others;
    std::array<SectionKind, kTypeCount> m_kindOf{};
    std::array<std::uint32_t, kTypeCount> m_highest{};  // sequence number by type byte
    std::uint64_t m_countersAt = 0;
    ModelPlan m_plan;
};

}  // namespace

ModelPlan PlanModel(const ModelFile& file, const ModelHost& host) { return Planner(file, host).Plan(); }
