#include "host/models/model_build.h"

#include <bit>
#include <cstdio>
#include <memory>
#include <new>
#include <vector>

#include "host/failure.h"
#include "host/models/model_host.h"
#include "host/models/model_plan.h"
#include "model/profile.h"
#include "net/grid_data_base.h"
#include "plates/mian_goujian.h"

namespace {

struct CloseStream {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, CloseStream>;

/// The bytes as the stream that the components read from. There must be some.
Stream StreamOf(std::string_view bytes) {
    Stream stream(::fmemopen(const_cast<char*>(bytes.data()), bytes.size(), "r"));  // read only
    if (!stream) throw std::bad_alloc();
    return stream;
}

class ModelBuilder {
public:
    ModelBuilder(ModelPlan& plan, CGridDataBase& db, const ModelHost& host) : m_plan(plan), m_db(db), m_host(host) {}

    BuiltModel Build() {
        AddSections<CGjNetNode>(m_plan.nodes, kNodeBlockSize, m_built.nodes);
        AddSections<CGjNetLine>(m_plan.lines, kLineBlockSize, m_built.lines);
        AddSections<CMianGouJian>(m_plan.plates, 0, m_built.plates);
        m_built.unresolvedPlates += static_cast<std::size_t>(m_plan.unresolvedPlates);
        AddOthers();
        return m_built;
    }

private:
    static std::uint32_t IdentityOf(std::string_view block) { return WordAt(block, 4); }

    template <class Component>
    void AddSections(const std::vector<PlannedBlocks>& sections, std::size_t blockSize, std::size_t& added) {
        for (const PlannedBlocks& section : sections) {
            added += AddBlocks<Component>(section, blockSize);
            // Nobody will ask what changed. Said early, it takes no memory for as many records as there are components.
            m_db.UndoInit();
            m_db.m_mapBanBianInsert.RemoveAll();
        }
    }

    template <class Component>
    std::size_t AddBlocks(const PlannedBlocks& section, std::size_t blockSize) {
        if (section.count == 0) return 0;
        const Stream stream = StreamOf(section.blocks);
        std::size_t added = 0, at = 0, i = 0;
        bool astray = false;  // the stream is not where the next block begins
        for (const AttributeRun& run : section.runs) {
            m_db.SetCurCeng(run.storey);  // what AddGouJian gives a component
            for (std::uint32_t left = run.count; left > 0; --left, ++i) {
                const std::string_view rest = section.blocks.substr(at);
                const std::size_t size = blockSize ? blockSize : PlateBlockSize(rest);
                const bool dropped = !section.dropped.empty() && section.dropped[i];
                if (!dropped && astray) std::fseek(stream.get(), static_cast<long>(at), SEEK_SET);
                const bool done = !dropped && AddOne<Component>(stream.get(), run, IdentityOf(rest));
                if (done) ++added;
                astray = !done;  // a reader that refuses a block may have read a part of it
                at += size;
            }
        }
        return added;
    }

    template <class Component>
    bool AddOne(std::FILE* stream, const AttributeRun& run, std::uint32_t id) {
        auto component = std::make_unique<Component>();
        component->m_pDataBase = &m_db;
        if (!component->ReadBinary(stream)) return Refuse(*component);
        component->set_m_dwGouJianID(id);  // with its type byte, where that is a host's
        component->m_dwTag = run.tag;
        component->m_nFEM_ID = run.fem;
        if (run.status != GJ_STATUS_NORMAL) component->set_m_byteStatus(static_cast<unsigned char>(run.status));
        if (!Settle(*component, run)) return Refuse(*component);
        m_db.AddGouJian(component.release());  // the container owns it
        return true;
    }

    static bool Settle(CGjNetNode& node, const AttributeRun& run) {
        node.m_fZ = std::bit_cast<float>(run.zBits);
        return true;
    }
    static bool Settle(CGjNetLine&, const AttributeRun&) { return true; }
    static bool Settle(CMianGouJian& plate, const AttributeRun&) { return plate.HasWholeBorder(); }

    // Always false. Of the rest nothing is refused that was planned.
    bool Refuse(CGouJianEx& component) {
        if (component.QueryBasicType() == kBasicPlate) ++m_built.unresolvedPlates;
        return false;
    }

    void AddOthers() {
        for (PlannedHostComponent& planned : m_plan.others) {
            planned.component->m_pDataBase = &m_db;
            if (!m_host.CanStand(*planned.component, m_db)) {
                ++m_built.unresolvedOthers;
                if (m_built.leftOut.size() < BuiltModel::kMostNamed)
                    m_built.leftOut.push_back(m_host.Describe(*planned.component));
                continue;
            }
            m_db.SetCurCeng(planned.storey);
            m_db.AddGouJian(planned.component.release());  // the container owns it
            ++m_built.others;
        }
    }

    ModelPlan& m_plan;
    CGridDataBase& m_db;
    const ModelHost& m_host;
    BuiltModel m_built;
};

void RestoreCounters(const ModelPlan& plan, CGridDataBase& db) {
    for (const auto& [type, highest] : plan.counters) db.GetContain().RestoreXuHao(type, highest);
}

void ReadHostData(std::string_view bytes, CGridDataBase& db, const ModelHost& host, BuiltModel& built) {
    char nothing = 0;
    Stream stream(bytes.empty() ? ::fmemopen(&nothing, 1, "r") : ::fmemopen(const_cast<char*>(bytes.data()), bytes.size(), "r"));
    if (!stream) throw std::bad_alloc();
    if (bytes.empty()) (void)std::fgetc(stream.get());  // a stream of nothing can't be had otherwise
    built.hostDataRead = host.ReadData(db, stream.get());
}

}  // namespace

void EmptyModel(CGridDataBase& db) {
    const int autoBreak = db.m_bAutoBreak, autoMerge = db.m_bAutoMerge, wholeNet = db.m_bWeiBanWholeNet;
    const int showGraph = db.m_bShowGraph;
    db.DestroyData();
    db.Initialize();
    db.m_bAutoBreak = autoBreak;
    db.m_bAutoMerge = autoMerge;
    db.m_bWeiBanWholeNet = wholeNet;
    db.m_bShowGraph = showGraph;
}

std::string BuiltModel::Remarks() const {
    std::string text;
    const auto say = [&](std::size_t count, const char* what) {
        if (count == 0) return;
        if (!text.empty()) text += "; ";
        text += std::to_string(count) + what;
    };
    say(unresolvedPlates, " plates could not be resolved and were left out");
    say(unresolvedOthers, " components of which the ground is missing were left out");
    for (std::size_t i = 0; i < leftOut.size(); ++i) text += (i == 0 ? ": " : ", ") + leftOut[i];
    if (unresolvedOthers > leftOut.size() && !leftOut.empty()) text += " and others";
    if (!hostDataRead) text += std::string(text.empty() ? "" : "; ") + "the host's data could not be read";
    return text;
}

BuiltModel BuildModel(ModelPlan& plan, const std::optional<ModelHeader>& header, CGridDataBase& db, const ModelHost& host) {
    EmptyModel(db);
    try {
        const ModelHeader settings = header.value_or(ModelHeader{});
        g_cTvoProfile.m_nNetTolerance = settings.tolerance;
        BuiltModel built = ModelBuilder(plan, db, host).Build();
        // Reading plates uses up identities of lines, for the synthetic ones. Counters come last.
        RestoreCounters(plan, db);
        db.SetCurCeng(settings.currentStorey);
        ReadHostData(plan.hostData, db, host, built);
        db.m_mapBanBianRemove.RemoveAll();
        db.UndoInit();
        db.GetContain().SetModifiedFlag(0);
        return built;
    } catch (...) {
        EmptyModel(db);
        throw;
    }
}

BuiltModel OpenModel(const std::string& path, CGridDataBase& db, const ModelHost& host) {
    const ModelFile file = ReadModelFile(path);
    const auto refuse = [&](const ModelFault& fault) { throw DataFailure("cannot open " + path + ": " + fault.Text()); };
    if (!file.faults.empty()) refuse(file.faults.front());
    ModelPlan plan = PlanModel(file, host);
    if (!plan.faults.empty()) refuse(plan.faults.front());
    return BuildModel(plan, file.header, db, host);
}
