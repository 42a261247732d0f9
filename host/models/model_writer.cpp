#include "host/models/model_writer.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "host/models/durable_file.h"
#include "host/models/memory_stream.h"
#include "host/models/model_assembler.h"
#include "host/models/model_content.h"
#include "host/models/model_host.h"
#include "model/profile.h"
#include "net/grid_data_base.h"

namespace {

// Components lie far apart, and their blocks are spread over a few rows of the cache.
void FetchAhead(const CGouJianEx* obj) {
    const char* p = reinterpret_cast<const char*>(obj);
    for (std::size_t row = 0; row < 4; ++row) __builtin_prefetch(p + 64 * row);
}

class ModelWriter {
public:
    ModelWriter(const std::string& path, CGridDataBase& db, const ModelHost& host, bool sync)
        : m_db(db), m_host(host), m_file(path), m_assembler([this](std::string_view bytes) { m_file.Write(bytes); }) {
        m_file.SetSync(sync);
    }

    SavedModel Save() {
        const ModelContent content = ContentOf(m_db);
        m_file.Write(HeaderBytes({}));  // its place; the real one comes last
        m_assembler.Counters(CountersOf(m_db));
        WriteBlocks(SectionKind::kNodes, content.nodes);
        WriteBlocks(SectionKind::kLines, content.lines);
        WriteBlocks(SectionKind::kPlates, content.plates);
        SavedModel saved{content.nodes.size(), content.lines.size(), content.plates.size(), 0, 0, 0};
        for (const auto& [type, family] : content.others)
            (m_host.Make(type) ? saved.others : saved.leftOut) += family.size();
        for (const auto& [type, family] : content.others)
            if (m_host.Make(type)) WriteHostFamily(type, family);
        WriteHostData();
        saved.bytes = WriteHeader(saved);
        m_file.Commit();
        return saved;
    }

private:
    template <class Write>
    void InPieces(const std::vector<CGouJianEx*>& all, Write write) {
        for (std::size_t from = 0; from < all.size(); from += kMostInSection)
            write(from, std::min<std::size_t>(all.size(), from + kMostInSection));
    }

    void WriteBlocks(SectionKind kind, const std::vector<CGouJianEx*>& all) {
        constexpr std::size_t kAhead = 12;
        InPieces(all, [&](std::size_t from, std::size_t to) {
            MemoryStream blocks;
            AttributeRuns runs;
            for (std::size_t i = from; i < to; ++i) {
                if (i + kAhead < all.size()) FetchAhead(all[i + kAhead]);
                all[i]->WriteBinary(blocks.Stream());
                const AttributeRun one = AttributesOf(*all[i], kind);
                m_assembler.NoteStorey(one.storey);
                runs.Add(one);
            }
            blocks.Put(runs.Bytes());
            m_assembler.Section(kind, 0, to - from, blocks.Bytes());
        });
    }

    void WriteHostFamily(unsigned char type, const std::vector<CGouJianEx*>& all) {
        InPieces(all, [&](std::size_t from, std::size_t to) {
            std::string payload;
            for (std::size_t i = from; i < to; ++i) {
                MemoryStream block;
                m_host.Write(*all[i], block.Stream());
                const AttributeRun a = AttributesOf(*all[i], SectionKind::kHost);
                m_assembler.NoteStorey(a.storey);
                PutHostRecord(payload, all[i]->get_m_dwGouJianNO(), all[i]->get_m_dwGouJianID(), a, block.Bytes());
            }
            m_assembler.Section(SectionKind::kHost, type, to - from, payload);
        });
    }

    void WriteHostData() {
        MemoryStream data;
        m_host.WriteData(m_db, data.Stream());
        if (const std::string_view bytes = data.Bytes(); !bytes.empty())
            m_assembler.Section(SectionKind::kData, 0, 1, bytes);
    }

    std::uint64_t WriteHeader(const SavedModel& saved) {
        ModelHeader header;
        header.nodes = static_cast<std::uint32_t>(saved.nodes);
        header.lines = static_cast<std::uint32_t>(saved.lines);
        header.plates = static_cast<std::uint32_t>(saved.plates);
        header.others = static_cast<std::uint32_t>(saved.others);
        header.tolerance = g_cTvoProfile.m_nNetTolerance;
        header.currentStorey = m_db.GetCurCeng();
        m_assembler.Complete(header);
        m_file.WriteAt(0, HeaderBytes(header));
        return header.fileLength;
    }

    CGridDataBase& m_db;
    const ModelHost& m_host;
    DurableFile m_file;
    ModelAssembler m_assembler;
};

}  // namespace

std::vector<std::pair<std::uint32_t, std::uint32_t>> CountersOf(CGridDataBase& db) {
    std::vector<std::pair<std::uint32_t, std::uint32_t>> counters;
    for (int type = 1; type < kTypeCount; ++type) {
        const unsigned long highest = db.GetContain().HighestXuHao(static_cast<unsigned char>(type));
        if (highest == 0) continue;
        counters.emplace_back(type, static_cast<std::uint32_t>(std::min(highest, 0xFFFFFFFFul)));
    }
    return counters;
}

SavedModel SaveModel(const std::string& path, CGridDataBase& db, const ModelHost& host, bool sync) {
    const SavedModel saved = ModelWriter(path, db, host, sync).Save();
    db.GetContain().SetModifiedFlag(0);
    return saved;
}
