#include "host/parts_file.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <memory>

#include "host/little_endian.h"
#include "model/draw_graph.h"
#include "model/gj_text.h"
#include "platform/code_page.h"

namespace {

constexpr float kFarthest = 1e15f;
constexpr int kLastLineType = 6;             // styles of pens
constexpr int kFirstRop = 1, kLastRop = 16;  // raster modes

void Put(std::FILE* file, std::uint32_t word) { PutLittleEndian(file, word); }
void Put(std::FILE* file, int number) { PutLittleEndian(file, static_cast<std::uint32_t>(number)); }

template <class... Floats>
void PutFloats(std::FILE* file, Floats... values) {
    (PutLittleEndian(file, std::bit_cast<std::uint32_t>(values)), ...);
}

void PutLetters(std::FILE* file, const CString& text) {
    Put(file, static_cast<std::uint32_t>(text.GetLength()));
    std::fwrite(text.GetString(), 1, text.Std().size(), file);
}

bool Take(std::FILE* file, std::uint32_t& word) { return TakeLittleEndian(file, word); }

bool Take(std::FILE* file, std::int32_t& number) {
    std::uint32_t word = 0;
    if (!TakeLittleEndian(file, word)) return false;
    number = static_cast<std::int32_t>(word);
    return true;
}

bool TakeOne(std::FILE* file, float& value) {
    std::uint32_t bits = 0;
    if (!TakeLittleEndian(file, bits)) return false;
    value = std::bit_cast<float>(bits);
    return std::fabs(value) <= kFarthest;  // not for NaN
}

template <class... Floats>
bool TakeFloats(std::FILE* file, Floats&... values) {
    return (TakeOne(file, values) && ...);
}

/// Memory grows with what the file holds, not with what it claims.
bool TakeLetters(std::FILE* file, CString& text) {
    std::uint32_t length = 0;
    if (!Take(file, length)) return false;
    std::string letters;
    for (; length > 0; --length) {
        const int c = std::fgetc(file);
        if (c == EOF) return false;
        letters += static_cast<char>(c);
    }
    if (!IsUtf8(letters)) return false;
    text = CString(std::move(letters));
    return true;
}

// ---- primitives -----------------------------------------------------------------------------------

// The same list of fields for writing and reading.
template <class Visit>
bool EachNumber(CGraphEntity& entity, Visit visit) {
    switch (entity.GetGraphType()) {
        case kGraphPoint: {
            auto& p = static_cast<CGraph_Point&>(entity);
            return visit(p.m_fX, p.m_fY);
        }
        case kGraphLine: {
            auto& l = static_cast<CGraph_Line&>(entity);
            return visit(l.m_fX1, l.m_fY1, l.m_fX2, l.m_fY2, l.m_fWidth);
        }
        case kGraphArc: {
            auto& a = static_cast<CGraph_Arc&>(entity);
            return visit(a.m_fX, a.m_fY, a.m_fR, a.m_fStart, a.m_fEnd, a.m_fWidth);
        }
        case kGraphCircle: {
            auto& c = static_cast<CGraph_Circle&>(entity);
            return visit(c.m_fX, c.m_fY, c.m_fR, c.m_fWidth);
        }
        case kGraphCircleRgn: {
            auto& d = static_cast<CGraph_CircleRgn&>(entity);
            return visit(d.m_fX, d.m_fY, d.m_fR);
        }
        case kGraphText: {
            auto& t = static_cast<CGraph_Text&>(entity);
            return visit(t.m_fX, t.m_fY, t.m_fHeight, t.m_fAngle);
        }
        default:
            return true;
    }
}

std::unique_ptr<CGraphEntity> MakePrimitive(std::uint32_t kind) {
    switch (kind) {
        case kGraphPoint:
            return std::make_unique<CGraph_Point>();
        case kGraphLine:
            return std::make_unique<CGraph_Line>();
        case kGraphArc:
            return std::make_unique<CGraph_Arc>();
        case kGraphCircle:
            return std::make_unique<CGraph_Circle>();
        case kGraphPolyRgn:
            return std::make_unique<CGraph_PolyRgn>();
        case kGraphCircleRgn:
            return std::make_unique<CGraph_CircleRgn>();
        case kGraphText:
            return std::make_unique<CGraph_Text>();
        default:
            return nullptr;
    }
}

void WritePrimitive(CGraphEntity& entity, std::FILE* file) {
    Put(file, static_cast<std::uint32_t>(entity.GetGraphType()));
    Put(file, static_cast<std::uint32_t>(static_cast<unsigned char>(entity.m_cPart)));
    Put(file, entity.m_dwColor);
    Put(file, entity.m_nLineType);
    Put(file, entity.m_bSnap);
    Put(file, entity.m_nRop2);
    EachNumber(entity, [&](auto&... values) {
        PutFloats(file, values...);
        return true;
    });
    if (entity.GetGraphType() == kGraphText) PutLetters(file, static_cast<CGraph_Text&>(entity).m_strText);
    if (entity.GetGraphType() != kGraphPolyRgn) return;
    const auto& points = static_cast<CGraph_PolyRgn&>(entity).m_aPoint;
    Put(file, static_cast<std::uint32_t>(points.GetSize()));
    for (const CFPoint& p : points) PutFloats(file, p.x, p.y);
}

bool ReadPoints(CGraph_PolyRgn& polygon, std::FILE* file) {
    std::uint32_t count = 0;
    if (!Take(file, count)) return false;
    for (; count > 0; --count) {
        CFPoint p;
        if (!TakeFloats(file, p.x, p.y)) return false;
        polygon.m_aPoint.Add(p);
    }
    return true;
}

/// Null when it makes no sense.
std::unique_ptr<CGraphEntity> ReadPrimitive(std::FILE* file) {
    std::uint32_t kind = 0, part = 0;
    if (!Take(file, kind)) return nullptr;
    auto entity = MakePrimitive(kind);
    if (!entity || !Take(file, part) || part > 0xFF || !Take(file, entity->m_dwColor) ||
        !Take(file, entity->m_nLineType) || !Take(file, entity->m_bSnap) || !Take(file, entity->m_nRop2))
        return nullptr;
    const bool known = entity->m_nLineType >= 0 && entity->m_nLineType <= kLastLineType &&
                       entity->m_nRop2 >= kFirstRop && entity->m_nRop2 <= kLastRop;
    if (!known) return nullptr;
    entity->SetPart(static_cast<char>(part));
    if (!EachNumber(*entity, [&](auto&... values) { return TakeFloats(file, values...); })) return nullptr;
    if (kind == kGraphText && !TakeLetters(file, static_cast<CGraph_Text&>(*entity).m_strText))
        return nullptr;
    if (kind == kGraphPolyRgn && !ReadPoints(static_cast<CGraph_PolyRgn&>(*entity), file)) return nullptr;
    return entity;
}

}  // namespace

int WriteText(const CGjText& text, std::FILE* file) {
    PutFloats(file, text.m_fX, text.m_fY, text.m_fHeight, text.m_fAngle);
    Put(file, text.m_crColor);
    PutLetters(file, text.m_strText);
    return std::ferror(file) == 0;
}

int ReadText(CGjText& text, std::FILE* file) {
    return TakeFloats(file, text.m_fX, text.m_fY, text.m_fHeight, text.m_fAngle) &&
           Take(file, text.m_crColor) && TakeLetters(file, text.m_strText);
}

int WriteGraph(CGouJianEx& component, std::FILE* file) {
    CDrawGraph& graph = *component.GetDrawGraph();
    std::uint32_t count = 0;
    for (CGraphEntity* entity : graph.m_aEntity)
        count += MakePrimitive(static_cast<std::uint32_t>(entity->GetGraphType())) != nullptr;
    Put(file, graph.m_bFixed);
    Put(file, count);
    for (CGraphEntity* entity : graph.m_aEntity)
        if (MakePrimitive(static_cast<std::uint32_t>(entity->GetGraphType()))) WritePrimitive(*entity, file);
    return std::ferror(file) == 0;
}

int ReadGraph(CGouJianEx& component, std::FILE* file) {
    CDrawGraph& graph = *component.GetDrawGraph();
    std::uint32_t count = 0;
    if (!Take(file, graph.m_bFixed) || !Take(file, count)) return 0;
    for (; count > 0; --count) {
        auto entity = ReadPrimitive(file);
        if (!entity) return 0;
        graph.Append(entity.release());  // the list owns it
    }
    return 1;
}
