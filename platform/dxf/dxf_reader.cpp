#include "platform/dxf/dxf_reader.h"

#include <algorithm>
#include <cstdlib>

#include "platform/dxf/dxf_real.h"
#include "platform/dxf/dxf_text.h"

void DxfReader::Run() {
    m_bMore = m_tags.Start();
    m_drawing.m_header.m_bBinary = m_tags.IsBinary();
    m_bNotDxf = !m_bMore || !(m_tags.Word() == "SECTION" || m_tags.Word() == "EOF");
    while (m_bMore && !m_bNotDxf && !m_bTooMany) {
        if (m_tags.Is(0, "EOF")) {
            m_drawing.m_header.m_bEndMark = true;
            break;
        }
        if (m_tags.Is(0, "SECTION"))
            ReadSection();
        else
            m_bMore = m_tags.NextZero();
    }
    m_drawing.m_header.m_nBadLines = m_tags.BadLines();
    m_drawing.m_header.m_nFirstBadLine = m_tags.FirstBadLine();
}

DxfReadResult DxfReader::Finish(const std::string& failure) const {
    DxfReadResult result;
    result.m_nByte = m_tags.Byte();
    result.m_nLine = m_tags.Line();
    const auto end = [&](DxfOutcome outcome, std::string reason) {
        result.m_eOutcome = outcome;
        result.m_strReason = std::move(reason);
        return result;
    };
    if (!failure.empty()) return end(DxfOutcome::Truncated, failure);
    if (m_bNotDxf) return end(DxfOutcome::NotDxf, "not a DXF file");
    if (m_bTooMany) return end(DxfOutcome::Truncated, "too many entities");
    if (m_drawing.m_header.m_bEndMark) return end(DxfOutcome::Ok, "");
    if (m_tags.WasCut()) return end(DxfOutcome::Truncated, m_tags.WasCut());
    // A file may lack its end mark, but then its sections must be closed.
    if (m_szSection)
        return end(DxfOutcome::Truncated, std::string("the file ends in the section ") + m_szSection);
    if (!m_bEntitiesSeen) return end(DxfOutcome::Truncated, "the file ends before its entities");
    return end(DxfOutcome::Ok, "");
}

// --- sections ---------------------------------------------------------------------------------------------

bool DxfReader::AtSectionEnd() const {
    if (m_tags.Code() != 0) return false;
    const std::string_view word = m_tags.Word();
    return word == "ENDSEC" || word == "SECTION" || word == "EOF";
}

void DxfReader::ReadSection() {
    m_szSection = "without name";
    if (!Next()) return;
    const std::string_view name = m_tags.Code() == 2 ? m_tags.Word() : std::string_view();
    if (name == "ENTITIES") {
        m_szSection = "ENTITIES";
        m_bEntitiesSeen = true;
        ReadEntities();
    } else if (name == "HEADER") {
        m_szSection = "HEADER";
        ReadHeader();
    } else if (name == "TABLES") {
        m_szSection = "TABLES";
        ReadTables();
    } else {
        m_szSection = name == "BLOCKS" ? "BLOCKS" : name == "OBJECTS" ? "OBJECTS" : "that it is in";
        while (m_bMore && !AtSectionEnd()) m_bMore = m_tags.NextZero();
    }
    if (m_bMore && m_tags.Word() == "ENDSEC") m_szSection = nullptr;
}

void DxfReader::ReadHeader() {
    DxfHeader& header = m_drawing.m_header;
    enum { kNone, kVersion, kCodePage, kUnits } variable = kNone;
    while (Next() && !AtSectionEnd()) {
        if (m_tags.Code() == 9) {
            const std::string_view name = m_tags.Word();
            variable = name == "$ACADVER" ? kVersion : name == "$DWGCODEPAGE" ? kCodePage
                     : name == "$INSUNITS" ? kUnits : kNone;
        } else if (variable == kVersion && m_tags.Code() == 1) {
            header.m_strVersion = m_tags.Word();
        } else if (variable == kCodePage && m_tags.Code() == 3) {
            header.m_strCodePage = m_tags.Word();
            header.m_nCodePage = DxfCodePage(header.m_strCodePage);
        } else if (variable == kUnits && m_tags.Code() == 70) {
            header.m_nInsUnits = m_tags.Integer();
        }
    }
}

void DxfReader::ReadTables() {
    while (m_bMore && !AtSectionEnd()) {
        if (m_tags.Is(0, "LAYER"))
            ReadLayerRecord();
        else
            m_bMore = m_tags.NextZero();
    }
}

void DxfReader::ReadLayerRecord() {
    DxfLayer* layer = nullptr;
    int flags = 0, color = 7;
    while (Next() && m_tags.Code() != 0) {
        // Braces that nothing closes end with the record, and the next record's opening is the current group.
        if (m_tags.Code() == 102 && SkipGroupsInBraces()) continue;
        if (!m_bMore || m_tags.Code() == 0) break;
        switch (m_tags.Code()) {
            case 2: layer = LayerNamed(m_tags.Word()); break;
            case 62: color = m_tags.Integer(); break;
            case 70: flags = m_tags.Integer(); break;
            default: break;
        }
    }
    if (!layer) return;
    layer->m_bInTable = true;
    layer->m_bOff = color < 0;
    layer->m_bFrozen = (flags & 1) != 0;
    layer->m_bLocked = (flags & 4) != 0;
    layer->m_nColor = std::abs(std::clamp(color, -256, 256));
}

/// From a group 102 "{..." to its "}": what a program hangs on a record, with any codes in it. False for
/// another 102, or when the file ends.
bool DxfReader::SkipGroupsInBraces() {
    if (!m_tags.Word().starts_with("{")) return false;
    while (Next() && m_tags.Code() != 0)
        if (m_tags.Code() == 102) return true;
    return false;
}

// --- names ------------------------------------------------------------------------------------------------

std::string DxfReader::Decoded(std::string_view raw) const {
    const DxfHeader& header = m_drawing.m_header;
    const bool utf8File = header.m_strVersion.starts_with("AC") && header.m_strVersion >= "AC1021";
    return DecodeDxfText(raw, utf8File, header.m_nCodePage);
}

std::string_view DxfReader::StoredText(std::string_view raw) {
    if (IsPlainDxfText(raw)) return m_drawing.m_arena.Copy(raw);
    return m_drawing.m_arena.Copy(std::string_view(Decoded(raw)));
}

DxfLayer* DxfReader::LayerNamed(std::string_view raw) {
    if (raw.empty()) raw = "0";
    const auto first = static_cast<unsigned char>(raw.front()), last = static_cast<unsigned char>(raw.back());
    const std::size_t slot = (raw.size() + last * 7u + first * 3u) % m_recent.size();
    Recent& recent = m_recent[slot];
    if (recent.raw == raw) return recent.layer;
    auto known = m_layerOfRaw.find(raw);
    if (known == m_layerOfRaw.end()) {
        // Two ways of writing one name (an escape, a code page) are one layer.
        std::string name = Decoded(raw);
        const auto [named, fresh] = m_layerOfName.try_emplace(name, nullptr);
        if (fresh) {
            named->second = &m_drawing.m_layers.emplace_back();
            named->second->m_strName = std::move(name);
        }
        known = m_layerOfRaw.emplace(raw, named->second).first;
    }
    recent = {known->first, known->second};
    return known->second;
}

DxfKind* DxfReader::KindNamed(std::string_view raw) {
    auto known = m_kindOfRaw.find(raw);
    if (known == m_kindOfRaw.end()) {
        DxfKind* kind = &m_drawing.m_kinds.emplace_back();
        kind->m_strName = Decoded(raw);
        known = m_kindOfRaw.emplace(raw, kind).first;
    }
    return known->second;
}
