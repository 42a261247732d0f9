#include "host/models/model_writer.h"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <set>
#include <utility>
#include <vector>

#include "host/models/crc32.h"
#include "host/models/durable_file.h"
#include "host/models/model_content.h"
#include "host/models/model_format.h"
#include "host/models/model_host.h"
#include "model/profile.h"
#include "net/gj_net_node.h"
#include "net/grid_data_base.h"

namespace {

/// A stream into memory, since the components write their blocks to streams.
class MemoryStream {
public:
    MemoryStream() : m_stream(::open_memstream(&m_bytes, &m_size)) {
        if (!m_stream) throw std::bad_alloc();
    }
    ~MemoryStream() {
        std::fclose(m_stream);
        std::free(m_bytes);
    }
    MemoryStream(const MemoryStream&) = delete;
    MemoryStream& operator=(const MemoryStream&) = delete;

    std::FILE* Stream() { return m_stream; }
    void Put(std::string_view bytes) { std::fwrite(bytes.data(), 1, bytes.size(), m_stream); }
    /// All that was written, good until more is.
    std::string_view Bytes() {
        if (std::fflush(m_stream) != 0 || std::ferror(m_stream)) throw std::bad_alloc();
        return {m_bytes, m_size};
    }

private:
    char* m_bytes = nullptr;
    std::size_t m_size = 0;
    std::FILE* m_stream;
};

// A selection belongs to the session. A component that came back selected could not be taken out of any.
std::uint32_t SavedStatus(const CGouJianEx& obj) {
    return obj.get_m_byteStatus() == GJ_STATUS_HIDDEN ? GJ_STATUS_HIDDEN : GJ_STATUS_NORMAL;
}

AttributeRun AttributesOf(const CGouJianEx& obj) {
    return {1, obj.m_nCeng, obj.m_dwTag, obj.m_nFEM_ID, 0, SavedStatus(obj)};
}

bool SameAttributes(const AttributeRun& a, const AttributeRun& b) {
    return a.storey == b.storey && a.tag == b.tag && a.fem == b.fem && a.zBits == b.zBits && a.status == b.status;
}

// Components lie far apart, and their blocks are spread over a few rows of the cache.
void FetchAhead(const CGouJianEx* obj) {
    const char* p = reinterpret_cast<const char*>(obj);
    for (std::size_t row = 0; row < 4; ++row) __builtin_prefetch(p + 64 * row);
}

class ModelWriter {
public:
    ModelWriter(const std::string& path, CGridDataBase& db, const ModelHost& host, bool sync)
        : m_db(db), m_host(host), m_file(path) {
        m_file.SetSync(sync);
    }

    SavedModel Save() {
        const ModelContent content = ContentOf(m_db);
        m_file.Write(HeaderBytes({}));  // its place; the real one comes last
        m_length = kModelHeaderSize;
        WriteCounters();
        WriteBlocks(SectionKind::kNodes, content.nodes);
        WriteBlocks(SectionKind::kLines, content.lines);
        WriteBlocks(SectionKind::kPlates, content.plates);
        SavedModel saved{content.nodes.size(), content.lines.size(), content.plates.size(), 0, 0, 0};
        for (const auto& [type, family] : content.others)
            (m_host.Make(type) ? saved.others : saved.leftOut) += family.size();
        for (const auto& [type, family] : content.others)
            if (m_host.Make(type)) WriteHostFamily(type, family);
        WriteHostData();
        WriteHeader(saved);
        m_file.Commit();
        saved.bytes = m_length;
        return saved;
    }

private:
    void WriteSection(SectionKind kind, std::uint32_t type, std::size_t count, std::string_view payload) {
        m_file.Write(HeadBytes({kind, type, static_cast<std::uint32_t>(count), payload.size(), Crc32(payload)}));
        m_file.Write(payload);
        m_length += kSectionHeadSize + payload.size();
        ++m_sections;
    }

    void WriteCounters() {
        std::string payload;
        std::size_t count = 0;
        for (int type = 1; type < kTypeCount; ++type) {
            const unsigned long highest = m_db.GetContain().HighestXuHao(static_cast<unsigned char>(type));
            if (highest == 0) continue;
            PutWord(payload, static_cast<std::uint32_t>(type));
            PutWord(payload, static_cast<std::uint32_t>(std::min(highest, 0xFFFFFFFFul)));
            ++count;
        }
        WriteSection(SectionKind::kCounters, 0, count, payload);
    }

    template <class Write>
    void InPieces(const std::vector<CGouJianEx*>& all, Write write) {
        for (std::size_t from = 0; from < all.size(); from += kMostInSection)
            write(from, std::min<std::size_t>(all.size(), from + kMostInSection));
    }

    void WriteBlocks(SectionKind kind, const std::vector<CGouJianEx*>& all) {
        constexpr std::size_t kAhead = 12;
        InPieces(all, [&](std::size_t from, std::size_t to) {
            MemoryStream blocks;
            std::vector<AttributeRun> runs;
            for (std::size_t i = from; i < to; ++i) {
                if (i + kAhead < all.size()) FetchAhead(all[i + kAhead]);
                all[i]->WriteBinary(blocks.Stream());
                AttributeRun one = AttributesOf(*all[i]);
                NoteStorey(one.storey);
                if (kind == SectionKind::kNodes)
                    one.zBits = std::bit_cast<std::uint32_t>(static_cast<const CGjNetNode*>(all[i])->m_fZ);
                if (!runs.empty() && SameAttributes(runs.back(), one))
                    ++runs.back().count;
                else
                    runs.push_back(one);
            }
            std::string tail;
            for (const AttributeRun& run : runs) PutRun(tail, run);
            blocks.Put(tail);
            WriteSection(kind, 0, to - from, blocks.Bytes());
        });
    }

    void WriteHostFamily(unsigned char type, const std::vector<CGouJianEx*>& all) {
        InPieces(all, [&](std::size_t from, std::size_t to) {
            std::string payload;
            for (std::size_t i = from; i < to; ++i) {
                MemoryStream block;
                m_host.Write(*all[i], block.Stream());
                const std::string_view bytes = block.Bytes();
                const AttributeRun a = AttributesOf(*all[i]);
                NoteStorey(a.storey);
                PutWord(payload, all[i]->get_m_dwGouJianNO());
                PutWord(payload, all[i]->get_m_dwGouJianID());
                PutWord(payload, static_cast<std::uint32_t>(bytes.size()));
                PutWord(payload, static_cast<std::uint32_t>(a.storey));
                PutWord(payload, a.tag);
                PutWord(payload, static_cast<std::uint32_t>(a.fem));
                PutWord(payload, a.status);
                payload.append(bytes);
            }
            WriteSection(SectionKind::kHost, type, to - from, payload);
        });
    }

    void WriteHostData() {
        MemoryStream data;
        m_host.WriteData(m_db, data.Stream());
        if (const std::string_view bytes = data.Bytes(); !bytes.empty()) WriteSection(SectionKind::kData, 0, 1, bytes);
    }

    void WriteHeader(const SavedModel& saved) {
        ModelHeader header;
        header.nodes = static_cast<std::uint32_t>(saved.nodes);
        header.lines = static_cast<std::uint32_t>(saved.lines);
        header.plates = static_cast<std::uint32_t>(saved.plates);
        header.others = static_cast<std::uint32_t>(saved.others);
        header.tolerance = g_cTvoProfile.m_nNetTolerance;
        header.currentStorey = m_db.GetCurCeng();
        header.storeys = static_cast<std::uint32_t>(m_storeys.size());
        if (!m_storeys.empty()) {
            header.lowestStorey = *m_storeys.begin();
            header.highestStorey = *m_storeys.rbegin();
        }
        header.sections = m_sections;
        header.fileLength = m_length;
        m_file.WriteAt(0, HeaderBytes(header));
    }

    void NoteStorey(int storey) {
        if (storey == m_lastStorey && !m_storeys.empty()) return;
        m_storeys.insert(storey);
        m_lastStorey = storey;
    }

    CGridDataBase& m_db;
    const ModelHost& m_host;
    DurableFile m_file;
    std::uint64_t m_length = 0;
    std::uint32_t m_sections = 0;
    std::set<int> m_storeys;
    int m_lastStorey = 0;  // the last that was entered
};

}  // namespace

SavedModel SaveModel(const std::string& path, CGridDataBase& db, const ModelHost& host, bool sync) {
    const SavedModel saved = ModelWriter(path, db, host, sync).Save();
    db.GetContain().SetModifiedFlag(0);
    return saved;
}
