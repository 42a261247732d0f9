#include "host/models/model_sections.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>

#include "host/failure.h"
#include "host/models/crc32.h"

namespace {

/// Closes on the way out.
class OpenFile {
public:
    explicit OpenFile(const std::string& path) : m_file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)) {}
    ~OpenFile() {
        if (m_file >= 0) ::close(m_file);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    int Get() const { return m_file; }

private:
    int m_file;
};

std::size_t ReadAll(int file, char* to, std::size_t size) {
    std::size_t have = 0;
    while (have < size) {
        const ssize_t n = ::read(file, to + have, std::min<std::size_t>(size - have, 1 << 30));
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return have;
        if (n == 0) break;
        have += static_cast<std::size_t>(n);
    }
    return have;
}

class Scanner {
public:
    explicit Scanner(std::string_view bytes) { m_file.bytes = bytes; }

    ModelFile Scan() {
        ReadHeader();
        std::size_t at = std::min(kModelHeaderSize, Bytes().size());
        while (at < Bytes().size()) at = ReadSection(at);
        CompareWithHeader();
        return std::move(m_file);
    }

private:
    std::string_view Bytes() const { return m_file.bytes; }
    void Fault(std::string where, std::uint64_t byte, std::string reason) {
        m_file.faults.push_back({std::move(where), byte, std::move(reason)});
    }

    void ReadHeader() {
        if (!Bytes().starts_with(kModelMagic)) return Fault("header", 0, "this is no model file");
        if (Bytes().size() < kModelHeaderSize) return Fault("header", Bytes().size(), "the file ends within it");
        const auto header = HeaderFrom(Bytes());
        if (!header) return Fault("header", 0, "its checksum does not hold");
        if (header->version != kModelVersion)
            return Fault("header", 8, "version " + std::to_string(header->version) + " of the format is not known here");
        m_file.header = header;
    }

    /// Takes the section at a place; where the next one may stand.
    std::size_t ReadSection(std::size_t at) {
        const auto head = HeadFrom(Bytes().substr(at));
        if (!head) {
            const std::size_t next = NextHead(at + 1);
            Fault("section " + std::to_string(m_file.sections.size() + 1), at,
                  next == Bytes().size() && next - at < kSectionHeadSize ? "the file ends within its head"
                                                                         : "there is no whole head");
            return next;
        }
        ModelSection section{*head, at, Bytes().substr(at + kSectionHeadSize), SectionState::kWhole};
        if (head->length > section.payload.size()) {
            // Or bytes are missing in the middle, and more sections follow.
            section.state = SectionState::kCut;
            Fault(SectionName(*head), at, "the file ends within it");
            m_file.sections.push_back(section);
            return NextHead(at + 1);
        }
        section.payload = section.payload.substr(0, static_cast<std::size_t>(head->length));
        const std::size_t end = at + kSectionHeadSize + section.payload.size();
        m_checked += section.payload.size();
        if (Crc32(section.payload) != head->checksum) {
            section.state = SectionState::kDamaged;
            Fault(SectionName(*head), at, "its checksum does not hold");
        }
        m_file.sections.push_back(section);
        // A damaged section may be longer or shorter than it was.
        const bool next = end == Bytes().size() || HeadFrom(Bytes().substr(end));
        if (section.state == SectionState::kWhole || next) return end;
        // Sections made to lie in one another could be checked over and over.
        return m_checked > 8 * Bytes().size() ? end : NextHead(at + 1);
    }

    /// The first whole head from a place on, or the end.
    std::size_t NextHead(std::size_t from) const {
        for (;;) {
            const std::size_t at = Bytes().find(kSectionMark, from);
            if (at == std::string_view::npos) return Bytes().size();
            if (HeadFrom(Bytes().substr(at))) return at;
            from = at + 1;
        }
    }

    void CompareWithHeader() {
        if (!m_file.header) return;
        const ModelHeader& header = *m_file.header;
        const auto differ = [&](const char* what, std::uint64_t said, std::uint64_t found) {
            if (said == found) return;
            Fault("header", 0, "it tells of " + std::to_string(said) + " " + what + ", and there are " + std::to_string(found));
        };
        std::map<SectionKind, std::uint64_t> counts;
        for (const ModelSection& section : m_file.sections) counts[section.head.kind] += section.head.count;
        differ("bytes", header.fileLength, Bytes().size());
        differ("sections", header.sections, m_file.sections.size());
        differ("nodes", header.nodes, counts[SectionKind::kNodes]);
        differ("lines", header.lines, counts[SectionKind::kLines]);
        differ("plates", header.plates, counts[SectionKind::kPlates]);
        differ("other components", header.others, counts[SectionKind::kHost]);
    }

    ModelFile m_file;
    std::uint64_t m_checked = 0;  // bytes whose checksum was worked out
};

}  // namespace

std::string ModelFault::Text() const { return where + " at byte " + std::to_string(byte) + ": " + reason; }

ModelFile TakeApart(std::string_view bytes) { return Scanner(bytes).Scan(); }

ModelFile ReadModelFile(const std::string& path, bool anyStart) {
    const auto fail = [&](const std::string& reason) { throw DataFailure("cannot read " + path + ": " + reason); };
    const OpenFile file(path);
    struct stat status {};
    if (file.Get() < 0 || ::fstat(file.Get(), &status) != 0) fail(std::strerror(errno));
    if (S_ISDIR(status.st_mode)) fail(std::strerror(EISDIR));
    if (!S_ISREG(status.st_mode)) fail("not a regular file");
    const auto size = static_cast<std::size_t>(status.st_size);
    auto storage = std::make_unique_for_overwrite<char[]>(size);
    errno = 0;
    const std::size_t have = ReadAll(file.Get(), storage.get(), size);
    if (have < size && errno != 0) fail(std::strerror(errno));
    const std::string_view bytes(storage.get(), have);
    if (!anyStart && !bytes.starts_with(kModelMagic)) fail("header at byte 0: this is no model file");
    ModelFile model = TakeApart(bytes);
    model.storage = std::move(storage);
    return model;
}
