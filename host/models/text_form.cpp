#include "host/models/text_form.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>

#include "host/failure.h"
#include "host/file_output.h"
#include "host/models/model_build.h"
#include "host/models/model_content.h"
#include "model/text_stream.h"
#include "net/grid_data_base.h"
#include "plates/mian_goujian.h"

namespace {

struct CloseStream {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, CloseStream>;

class TextLoader {
public:
    TextLoader(std::FILE* file, CGridDataBase& db) : m_file(file), m_db(db) {}

    TextTally Load() {
        while (NextBlock()) {
            if (HasKey("###WangDian"))
                m_tally.nodes += Take(std::make_unique<CGjNetNode>(), "node");
            else if (HasKey("###WangXian"))
                m_tally.lines += Take(std::make_unique<CGjNetLine>(), "line");
            else if (HasKey("###JianTuBan"))
                m_tally.plates += Take(std::make_unique<CMianGouJian>(), "plate");
            else
                Refuse("no block begins here");
        }
        return m_tally;
    }

private:
    [[noreturn]] void Refuse(const std::string& why) const {
        throw DataFailure("byte " + std::to_string(m_at) + ": " + why);
    }
    bool HasKey(const char* key) const { return std::strstr(m_line, key) != nullptr; }

    /// Looks at the next line that is neither blank nor a comment, and goes back in front of it.
    bool NextBlock() {
        for (;;) {
            m_at = std::ftell(m_file);
            m_line[0] = 0;
            fgets_skip_comment(m_line, sizeof m_line, m_file, ";");
            if (m_line[0] == 0 && std::feof(m_file)) return false;
            if (m_line[std::strspn(m_line, " \t\r\n")] == 0) {
                if (std::ftell(m_file) == m_at) return false;
                continue;
            }
            std::fseek(m_file, m_at, SEEK_SET);
            return true;
        }
    }

    template <class Component>
    std::size_t Take(std::unique_ptr<Component> component, const char* what) {
        component->m_pDataBase = &m_db;
        if (!component->LoadData(m_file)) Refuse(std::string("a ") + what + " that can't be read or whose ends are missing");
        if (std::ftell(m_file) <= m_at) Refuse("the text does not go on");
        const std::uint32_t id = component->m_dwGouJianID;
        if ((id & 0xFFFFFF) == 0) Refuse(std::string("a ") + what + " without an identity");
        if (m_db.FindGouJian(id)) Refuse("identity " + std::to_string(id) + " stands there twice");
        if (!Check(*component)) return 0;
        m_db.AddGouJian(component.release());  // the container owns it
        return 1;
    }

    bool Check(CGjNetNode& node) {
        node.m_fX = node.m_fY = 0;
        return true;
    }
    bool Check(CGjNetLine& line) {
        if ((line.m_nArc != 0 && line.m_nArc != 1) || !(std::fabs(line.m_fBulge) <= 360.0f)) Refuse("a line of no kind");
        return true;
    }
    bool Check(CMianGouJian& plate) {
        if (plate.HasWholeBorder()) return true;
        ++m_tally.leftOut;
        return false;
    }

    std::FILE* m_file;
    CGridDataBase& m_db;
    TextTally m_tally;
    long m_at = 0;  // where the block at hand begins
    char m_line[500] = "";
};

TextTally WriteText(std::FILE* file, CGridDataBase& db) {
    const ModelContent content = ContentOf(db);
    std::fputs("; A net as text: nodes, lines, plates. Coordinates are for reading, and don't come back.\n", file);
    TextTally tally{content.nodes.size(), content.lines.size(), content.plates.size(), 0};
    for (CGouJianEx* node : content.nodes) node->SaveData(file);
    for (CGouJianEx* line : content.lines) line->SaveData(file);
    for (CGouJianEx* obj : content.plates) {
        // Half a block would spoil the reading of the next.
        if (static_cast<CMianGouJian*>(obj)->HasWholeBorder())
            obj->SaveData(file);
        else
            ++tally.leftOut;
    }
    tally.plates -= tally.leftOut;
    return tally;
}

}  // namespace

TextTally SaveModelText(const std::string& path, CGridDataBase& db) {
    TextTally tally;
    ReplaceFile(path, [&](const std::string& name) -> std::string {
        errno = 0;
        Stream file(std::fopen(name.c_str(), "wb"));
        if (!file) return std::strerror(errno);
        tally = WriteText(file.get(), db);
        const bool written = std::fflush(file.get()) == 0 && !std::ferror(file.get());
        const int error = errno;
        const bool closed = std::fclose(file.release()) == 0;
        return written && closed ? "" : std::strerror(written ? errno : error ? error : EIO);
    });
    return tally;
}

TextTally LoadModelText(const std::string& path, CGridDataBase& db) {
    if (!db.GetContain().IsEmpty()) throw DataFailure("the text form is read into an empty model only");
    RequireReadable(path);
    errno = 0;
    const Stream file(std::fopen(path.c_str(), "rb"));
    if (!file) throw DataFailure("cannot read " + path + ": " + std::strerror(errno));
    try {
        const TextTally tally = TextLoader(file.get(), db).Load();
        db.UndoInit();
        return tally;
    } catch (const DataFailure& failure) {
        EmptyModel(db);
        throw DataFailure("cannot read " + path + ": " + failure.what());
    } catch (...) {
        EmptyModel(db);
        throw;
    }
}
