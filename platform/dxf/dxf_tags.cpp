#include "platform/dxf/dxf_tags.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>

#include "platform/dxf/dxf_real.h"
#include "platform/dxf/dxf_source.h"

namespace {

constexpr std::size_t kWindow = 256 * 1024;  // fits the processor's second cache; lines have 2 KB at most
constexpr std::size_t kStops = 8;
constexpr std::string_view kBinaryMark("AutoCAD Binary DXF\r\n\x1A\0", 22);
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr char kCtrlZ = '\x1A';
constexpr int kComment = 999;
constexpr const char* kCutInGroup = "the file ends in the middle of a group";

/// How binary files store the value of a group.
enum class Form : std::uint8_t { Unknown, Text, Real, Int16, Int32, Int64, Bool, Chunk };

constexpr int kCodes = 1072;
constexpr auto kForms = [] {
    struct { int first, last; Form form; } const ranges[] = {
        {0, 9, Form::Text},       {10, 59, Form::Real},     {60, 79, Form::Int16},    {90, 99, Form::Int32},
        {100, 109, Form::Text},   {110, 149, Form::Real},   {160, 169, Form::Int64},  {170, 179, Form::Int16},
        {210, 239, Form::Real},   {270, 289, Form::Int16},  {290, 299, Form::Bool},   {300, 309, Form::Text},
        {310, 319, Form::Chunk},  {320, 369, Form::Text},   {370, 389, Form::Int16},  {390, 399, Form::Text},
        {400, 409, Form::Int16},  {410, 419, Form::Text},   {420, 429, Form::Int32},  {430, 439, Form::Text},
        {440, 459, Form::Int32},  {460, 469, Form::Real},   {470, 481, Form::Text},   {999, 1003, Form::Text},
        {1004, 1004, Form::Chunk}, {1005, 1009, Form::Text}, {1010, 1059, Form::Real},
        {1060, 1070, Form::Int16}, {1071, 1071, Form::Int32},
    };
    std::array<Form, kCodes> forms{};
    for (const auto& r : ranges)
        for (int code = r.first; code <= r.last; ++code) forms[static_cast<std::size_t>(code)] = r.form;
    return forms;
}();

Form FormOf(int code) {
    return code >= 0 && code < kCodes ? kForms[static_cast<std::size_t>(code)] : Form::Unknown;
}

/// The reals of entities, extrusions among them; not those of foreign programs' data.
bool IsRealCode(int code) {
    const auto within = [&](int first, int last) {
        return static_cast<unsigned>(code - first) <= static_cast<unsigned>(last - first);
    };
    return within(10, 59) || within(210, 239) || within(140, 149);
}

const char* Find(const char* from, const char* to, char c) {
    return static_cast<const char*>(std::memchr(from, c, static_cast<std::size_t>(to - from)));
}

}  // namespace

DxfTagScanner::DxfTagScanner(DxfByteSource& source)
    : m_source(source),
      m_window(std::make_unique_for_overwrite<char[]>(kWindow + kStops)),
      m_p(m_window.get()),
      m_pEnd(m_window.get()),
      m_pTag(m_window.get()) {
    std::memset(m_pEnd, '\n', kStops);
}

bool DxfTagScanner::Start() {
    while (static_cast<std::size_t>(m_pEnd - m_p) < kBinaryMark.size() + 2 && Refill()) {}
    const std::string_view head(m_p, static_cast<std::size_t>(m_pEnd - m_p));
    if (head.starts_with(kBinaryMark)) {
        m_bBinary = true;
        m_p += kBinaryMark.size();
        // The first group is 0, "SECTION". With codes of two bytes another zero stands before the text.
        m_bShortCodes = head.size() > kBinaryMark.size() + 1 && head[kBinaryMark.size() + 1] != '\0';
    } else if (head.starts_with(kUtf8Mark)) {
        m_p += kUtf8Mark.size();
    }
    if (!Next() || m_nCode != 0) return false;
    m_bStarted = true;
    return true;
}

bool DxfTagScanner::NextZero() {
    do {
        if (!(m_bBinary ? NextBinary() : NextText(false))) return false;
    } while (m_nCode != 0);
    return true;
}

std::string_view DxfTagScanner::Word() const { return TrimBlanks(m_text); }

int DxfTagScanner::Integer() const {
    if (!m_bBinary) return ReadInteger(m_text);
    return static_cast<int>(std::clamp<std::int64_t>(m_nInteger, std::numeric_limits<int>::min(),
                                                     std::numeric_limits<int>::max()));
}

bool DxfTagScanner::Cut(const char* reason) {
    m_szCut = reason;
    m_bEnd = true;
    m_p = m_pTag = m_pEnd;
    m_nLine = m_nNextLine;
    return false;
}

/// Moves what is not done yet to the front of the window and fills up the rest. False when nothing came,
/// because the file ends or the window is full.
bool DxfTagScanner::Refill() {
    if (m_bEnd) return false;
    const char* const keep = m_pTag;
    const auto kept = static_cast<std::size_t>(m_pEnd - keep);
    if (kept == kWindow) return false;
    const auto passed = keep - m_window.get();
    if (passed > 0) {
        if (kept > 0) std::memmove(m_window.get(), keep, kept);
        m_nBase += static_cast<std::uint64_t>(passed);
        m_p -= passed;
        m_pEnd -= passed;
        m_pTag -= passed;
    }
    const std::size_t got = m_source.Read(m_pEnd, kWindow - kept);
    m_pEnd += got;
    std::memset(m_pEnd, '\n', kStops);
    m_bEnd = got == 0;
    return got > 0;
}

// --- text -------------------------------------------------------------------------------------------------

// Each step looks for its line's end without asking whether the window ends before: the stops behind the
// window end every loop, and a line end at or behind m_pEnd means that more must be read first.
bool DxfTagScanner::NextText(bool readReals) {
    if (m_bPassRest && !PassLongValue('\n')) return false;
    for (;;) {
        m_pTag = m_p;
        const char* p = m_p;
        while (*p == ' ' || *p == '\t') ++p;
        const bool negative = *p == '-';
        p += negative;
        const char* const first = p;
        int code = 0;
        for (; *p >= '0' && *p <= '9' && p - first < 5; ++p) code = code * 10 + (*p - '0');
        const bool any = p != first;
        while (*p == ' ' || *p == '\t' || *p == '\r') ++p;
        if (*p != '\n' || p >= m_pEnd || !any) {
            if (!PassBadLine()) return false;
            continue;
        }
        ++p;
        m_nCode = negative ? -code : code;
        m_bReal = IsRealCode(m_nCode);
        if (m_bReal && readReals) {
            if (const char* q = ReadShortReal(p, m_dReal)) {
                while (*q == ' ' || *q == '\r') ++q;
                if (*q == '\n' && q < m_pEnd) {
                    m_bNumber = true;
                    m_p = q + 1;
                    m_nLine = m_nNextLine;
                    m_nNextLine += 2;
                    return true;
                }
            }
        }
        if (const char* end = Find(p, m_pEnd, '\n')) {
            m_p = end + 1;
            if (!TakeTextValue(p, end, readReals)) continue;  // a comment
            return true;
        }
        const auto offset = p - m_pTag;
        if (Refill()) continue;
        return EndOfText(m_pTag + offset);
    }
}

/// Makes a whole line the current value. False for a comment.
bool DxfTagScanner::TakeTextValue(const char* from, const char* to, bool readReals) {
    m_nLine = m_nNextLine;
    m_nNextLine += 2;
    if (m_nCode == kComment) return false;
    if (to != from && to[-1] == '\r') --to;
    m_text = {from, static_cast<std::size_t>(to - from)};
    if (m_bReal && readReals) m_dReal = ReadReal(m_text, m_bNumber);
    return true;
}

/// The line at m_pTag is no group code, or not all of it is here. True to try again.
bool DxfTagScanner::PassBadLine() {
    const char* const end = Find(m_p, m_pEnd, '\n');
    const char* const stop = end ? end : m_pEnd;
    const std::string_view line = TrimBlanks({m_p, static_cast<std::size_t>(stop - m_p)});
    if (line.starts_with(kCtrlZ)) {  // the end of a file in older systems
        m_bEnd = true;
        m_p = m_pTag = m_pEnd;
        m_nLine = m_nNextLine;
        return false;
    }
    if (!end) {
        if (Refill()) return true;
        m_nLine = m_nNextLine;
        if (m_bEnd && line.empty()) return false;
        return Cut(m_bEnd ? kCutInGroup : "a line has no end");
    }
    if (!m_bStarted && !line.empty()) return Cut("the file does not begin with a group code");
    if (m_nBadLines++ == 0) m_nFirstBadLine = m_nNextLine;
    ++m_nNextLine;
    m_p = end + 1;
    return true;
}

/// The value has no line end in the window, and no more comes. At the end of the file nobody can tell whether
/// the value is whole, but for the two words that may well stand last.
bool DxfTagScanner::EndOfText(const char* value) {
    const std::string_view text(value, static_cast<std::size_t>(m_pEnd - value));
    if (!m_bEnd) {  // the window is full
        m_bPassRest = true;
        m_p = m_pEnd;
        if (TakeTextValue(value, m_pEnd, true)) return true;
        return NextText(true);
    }
    const std::string_view word = TrimBlanks(text.substr(0, text.find(kCtrlZ)));
    if (m_nCode != 0 || (word != "EOF" && word != "ENDSEC")) return Cut(kCutInGroup);
    m_text = word;
    m_p = m_pEnd;
    m_nLine = m_nNextLine;
    m_nNextLine += 2;
    return true;
}

/// Passes over the rest of a value that is longer than the window.
bool DxfTagScanner::PassLongValue(char terminator) {
    m_bPassRest = false;
    for (;;) {
        if (const char* end = Find(m_p, m_pEnd, terminator)) {
            m_p = end + 1;
            return true;
        }
        m_p = m_pTag = m_pEnd;
        if (!Refill()) return Cut(kCutInGroup);
    }
}

// --- binary -----------------------------------------------------------------------------------------------

bool DxfTagScanner::Need(std::size_t bytes) {
    while (static_cast<std::size_t>(m_pEnd - m_p) < bytes)
        if (!Refill()) return false;
    return true;
}

/// The next number, whose bytes stand with the lowest first. Need has been asked.
template <class T>
T DxfTagScanner::Take() {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < sizeof(T); ++i)
        bits |= static_cast<std::uint64_t>(static_cast<unsigned char>(m_p[i])) << (8 * i);
    m_p += sizeof(T);
    if constexpr (sizeof(T) == 8)
        return std::bit_cast<T>(bits);
    else
        return static_cast<T>(bits);
}

bool DxfTagScanner::NextBinary() {
    if (m_bPassRest && !PassLongValue('\0')) return false;
    do {
        m_pTag = m_p;
        if (!Need(1)) {
            m_pTag = m_p;
            return false;
        }
        if (!m_bShortCodes) {
            if (!Need(2)) return Cut(kCutInGroup);
            m_nCode = Take<std::int16_t>();
        } else if (m_nCode = Take<std::uint8_t>(); m_nCode == 255) {  // a longer code follows
            if (!Need(2)) return Cut(kCutInGroup);
            m_nCode = Take<std::int16_t>();
        }
        m_bReal = IsRealCode(m_nCode);
        m_text = {};
        m_nInteger = 0;
        bool whole = true;
        switch (FormOf(m_nCode)) {
            case Form::Text: whole = TakeBinaryText(); break;
            case Form::Real:
                whole = Need(8);
                m_dReal = whole ? Take<double>() : 0;
                m_bNumber = true;
                break;
            case Form::Int16:
                whole = Need(2);
                m_nInteger = whole ? Take<std::int16_t>() : 0;
                break;
            case Form::Int32:
                whole = Need(4);
                m_nInteger = whole ? Take<std::int32_t>() : 0;
                break;
            case Form::Int64:
                whole = Need(8);
                m_nInteger = whole ? Take<std::int64_t>() : 0;
                break;
            case Form::Bool:
                whole = Need(1);
                m_nInteger = whole ? Take<std::uint8_t>() : 0;
                break;
            case Form::Chunk:
                whole = Need(1);
                if (whole) {
                    const auto length = Take<std::uint8_t>();
                    whole = Need(length);
                    m_p += whole ? length : 0;
                }
                break;
            case Form::Unknown: return Cut("a group has a code whose size is not known");
        }
        if (!whole) return Cut(kCutInGroup);
    } while (m_nCode == kComment);
    return true;
}

bool DxfTagScanner::TakeBinaryText() {
    for (;;) {
        if (const char* end = Find(m_p, m_pEnd, '\0')) {
            m_text = {m_p, static_cast<std::size_t>(end - m_p)};
            m_p = end + 1;
            return true;
        }
        if (Refill()) continue;
        if (m_bEnd) return false;
        m_text = {m_p, static_cast<std::size_t>(m_pEnd - m_p)};  // longer than the window
        m_p = m_pEnd;
        m_bPassRest = true;
        return true;
    }
}
