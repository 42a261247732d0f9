#include "host/models/journal_format.h"

#include <algorithm>

#include "host/models/crc32.h"

namespace {

constexpr std::size_t kFixedHeader = 36;  // up to the path
constexpr std::uint32_t kWholeFlag = 1;

void PutLong(std::string& out, std::uint64_t value) {
    PutWord(out, static_cast<std::uint32_t>(value & 0xFFFFFFFF));
    PutWord(out, static_cast<std::uint32_t>(value >> 32));
}

std::uint64_t LongAt(std::string_view bytes, std::size_t at) {
    return WordAt(bytes, at) | static_cast<std::uint64_t>(WordAt(bytes, at + 4)) << 32;
}

/// Reads on and on; past the end everything is 0 and `Good` false.
class Cursor {
public:
    explicit Cursor(std::string_view bytes) : m_bytes(bytes) {}

    std::uint32_t Word() { return Has(4) ? WordAt(Take(4), 0) : 0; }
    std::int32_t Int() { return static_cast<std::int32_t>(Word()); }
    std::string_view Bytes(std::size_t size) { return Has(size) ? Take(size) : std::string_view(); }
    bool Has(std::size_t size) {
        if (m_bytes.size() < size) m_good = false;
        return m_good;
    }
    bool Good() const { return m_good; }
    bool AtEnd() const { return m_bytes.empty(); }

private:
    std::string_view Take(std::size_t size) {
        const std::string_view taken = m_bytes.substr(0, size);
        m_bytes.remove_prefix(size);
        return taken;
    }

    std::string_view m_bytes;
    bool m_good = true;
};

bool ReadPayload(std::string_view payload, JournalStep& step) {
    Cursor cursor(payload);
    step.tolerance = cursor.Int();
    step.currentStorey = cursor.Int();
    for (std::uint32_t left = cursor.Word(); left > 0 && cursor.Good(); --left) {
        const std::uint32_t type = cursor.Word();
        step.counters.emplace_back(type, cursor.Word());
    }
    const bool data = cursor.Word() != 0;
    const std::string_view bytes = cursor.Bytes(cursor.Word());
    if (data) step.hostData = bytes;
    const std::uint32_t changes = cursor.Word();
    if (!cursor.Has(std::size_t{changes} * kChangeSize)) return false;
    step.changes.reserve(changes);
    std::uint64_t blocks = 0;
    for (std::uint32_t i = 0; i < changes; ++i) {
        StoredComponent change;
        change.id = cursor.Word();
        change.kind = static_cast<SectionKind>(cursor.Word());
        change.number = cursor.Word();
        change.attributes = {1, cursor.Int(), cursor.Word(), cursor.Int(), cursor.Word(), cursor.Word()};
        change.length = cursor.Word();
        blocks += change.length;
        step.changes.push_back(change);
    }
    step.blocks = cursor.Bytes(static_cast<std::size_t>(blocks));
    return cursor.Good() && cursor.AtEnd();
}

struct StepHead {
    std::uint32_t number = 0, flags = 0, checksum = 0;
    std::uint64_t length = 0;
};

std::optional<StepHead> StepHeadFrom(std::string_view bytes) {
    if (bytes.size() < kStepHeadSize || !bytes.starts_with(kStepMark)) return {};
    if (Crc32(bytes.substr(0, kStepHeadSize - 4)) != WordAt(bytes, kStepHeadSize - 4)) return {};
    return StepHead{WordAt(bytes, 4), WordAt(bytes, 8), WordAt(bytes, 24), LongAt(bytes, 16)};
}

/// The payload of a whole step at the start of the bytes.
std::optional<std::string_view> PayloadOf(const StepHead& head, std::string_view bytes) {
    if (head.length > bytes.size() - kStepHeadSize) return {};
    const std::string_view payload = bytes.substr(kStepHeadSize, static_cast<std::size_t>(head.length));
    if (Crc32(payload) != head.checksum) return {};
    return payload;
}

/// Whole steps anywhere in the bytes. Those made to lie in one another are not looked at over and over.
std::size_t WholeSteps(std::string_view bytes) {
    std::size_t count = 0, checked = 0;
    const std::size_t most = 8 * bytes.size();
    for (std::size_t at = 0; (at = bytes.find(kStepMark, at)) != std::string_view::npos && checked <= most;) {
        const auto head = StepHeadFrom(bytes.substr(at));
        if (head) checked += static_cast<std::size_t>(std::min<std::uint64_t>(head->length, bytes.size()));
        const auto payload = head ? PayloadOf(*head, bytes.substr(at)) : std::nullopt;
        if (payload) ++count;
        at += payload ? kStepHeadSize + payload->size() : 1;
    }
    return count;
}

}  // namespace

std::string JournalHeaderBytes(const JournalHeader& header) {
    std::string out(kJournalMagic);
    PutWord(out, kJournalVersion);
    PutWord(out, static_cast<std::uint32_t>(kFixedHeader + header.modelPath.size() + 4));
    PutWord(out, !header.base.file ? 0 : header.whole ? 2 : 1);
    PutWord(out, header.base.checksum);
    PutLong(out, header.base.length);
    PutWord(out, static_cast<std::uint32_t>(header.modelPath.size()));
    out += header.modelPath;
    PutWord(out, Crc32(out));
    return out;
}

std::optional<JournalHeader> JournalHeaderFrom(std::string_view bytes) {
    if (bytes.size() < kFixedHeader + 4 || !bytes.starts_with(kJournalMagic)) return {};
    if (WordAt(bytes, 8) != kJournalVersion) return {};
    const std::size_t path = WordAt(bytes, 32), length = WordAt(bytes, 12);
    if (length != kFixedHeader + path + 4 || bytes.size() < length) return {};
    if (Crc32(bytes.substr(0, length - 4)) != WordAt(bytes, length - 4)) return {};
    JournalHeader header;
    const std::uint32_t base = WordAt(bytes, 16);
    header.base = {base == 1 || base == 2, WordAt(bytes, 20), LongAt(bytes, 24)};
    header.whole = base != 1;
    header.modelPath = bytes.substr(kFixedHeader, path);
    header.length = length;
    return header;
}

std::string StepBytes(const JournalStep& step) {
    std::string payload;
    payload.reserve(1024 + step.changes.size() * kChangeSize + step.blocks.size() +
                    (step.hostData ? step.hostData->size() : 0));
    PutWord(payload, static_cast<std::uint32_t>(step.tolerance));
    PutWord(payload, static_cast<std::uint32_t>(step.currentStorey));
    PutWord(payload, static_cast<std::uint32_t>(step.counters.size()));
    for (const auto& [type, highest] : step.counters) {
        PutWord(payload, type);
        PutWord(payload, highest);
    }
    PutWord(payload, step.hostData ? 1 : 0);
    PutWord(payload, step.hostData ? static_cast<std::uint32_t>(step.hostData->size()) : 0);
    if (step.hostData) payload += *step.hostData;
    PutWord(payload, static_cast<std::uint32_t>(step.changes.size()));
    for (const StoredComponent& change : step.changes) {
        const AttributeRun& a = change.attributes;
        for (const std::uint32_t word : {change.id, static_cast<std::uint32_t>(change.kind), change.number,
                                         static_cast<std::uint32_t>(a.storey), a.tag,
                                         static_cast<std::uint32_t>(a.fem), a.zBits, a.status, change.length})
            PutWord(payload, word);
    }
    payload += step.blocks;

    std::string out(kStepMark);
    out.reserve(kStepHeadSize + payload.size());
    PutWord(out, step.number);
    PutWord(out, step.whole ? kWholeFlag : 0);
    PutWord(out, 0);
    PutLong(out, payload.size());
    PutWord(out, Crc32(payload));
    PutWord(out, Crc32(out));
    return out + payload;
}

JournalContent ReadJournal(std::string_view bytes) {
    JournalContent content;
    content.header = JournalHeaderFrom(bytes);
    if (content.header) content.length = content.header->length;
    while (content.header && content.length < bytes.size()) {
        const std::string_view rest = bytes.substr(content.length);
        const auto head = StepHeadFrom(rest);
        const auto payload = head ? PayloadOf(*head, rest) : std::nullopt;
        JournalStep step;
        if (!payload || head->number != content.steps.size() + 1 || !ReadPayload(*payload, step)) break;
        step.number = head->number;
        step.whole = (head->flags & kWholeFlag) != 0;
        content.steps.push_back(std::move(step));
        content.length += kStepHeadSize + payload->size();
    }
    content.torn = content.length < bytes.size();
    if (content.torn) content.lost = WholeSteps(bytes.substr(content.length));
    return content;
}
