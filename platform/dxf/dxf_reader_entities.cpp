#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/dxf/dxf_reader.h"

namespace {

constexpr double kFarthest = 1e12;  // coordinates and radii beyond are no drawing's
constexpr std::size_t kDropsKept = 100;

/// POLYLINE flags and one of VERTEX.
enum { kClosed = 1, k3D = 8, kMesh = 16, kPolyface = 64, kSplineFrame = 16 };

}  // namespace

/// The object system of extrusion (0, 0, -1) is the world seen from below: x runs the other way. Other
/// extrusions than that and (0, 0, 1) are not undone; a plan has none.
bool DxfReader::Common::TurnedOver() const {
    constexpr double kNegligible = 1e-9;
    return extrusion[2] < 0 && std::abs(extrusion[0]) <= -kNegligible * extrusion[2] &&
           std::abs(extrusion[1]) <= -kNegligible * extrusion[2];
}

void DxfReader::Common::Drop(DxfDropReason why) {
    if (!bad) reason = why;
    bad = true;
}

// --- the groups that all entities share -------------------------------------------------------------------

DxfReader::Common DxfReader::Begin() {
    Common common;
    common.kind = KindNamed(m_tags.Word());
    common.line = m_tags.Line();
    common.byte = m_tags.Byte();
    return common;
}

/// Goes to the next group that is the entity's own. False when the record ends.
bool DxfReader::NextGroup(Common& common) {
    while (Next()) {
        const int code = m_tags.Code();
        if (code == 0) return false;
        if (common.embedded || code >= 1000 || code < 0) continue;
        if (m_tags.IsReal()) {
            if (!(std::abs(m_tags.Real()) <= kFarthest)) CheckReal(common);
            if (code < 210) return true;
            if (code % 10 == 0) common.extrusion[(code - 210) / 10] = m_tags.Real();
            continue;
        }
        switch (code) {
            case 5: case 100: case 330: break;
            case 8: case 62: case 67: case 101: case 102: TakeCommonGroup(common); break;
            default: return true;
        }
        if (!m_bMore || m_tags.Code() == 0) return false;
    }
    return false;
}

void DxfReader::TakeCommonGroup(Common& common) {
    switch (m_tags.Code()) {
        case 8: common.layer = LayerNamed(m_tags.Word()); break;
        case 62: common.color = static_cast<std::int16_t>(std::clamp(m_tags.Integer(), -256, 256)); break;
        case 67: common.paperSpace = m_tags.Integer() == 1; break;
        case 101: common.embedded = true; break;  // it uses the entity's codes, and lasts to the record's end
        default: SkipGroupsInBraces(); break;
    }
}

/// A number that is not finite, or great. Great ones matter as coordinates (and as elevation and thickness)
/// only: codes 10 to 39.
void DxfReader::CheckReal(Common& common) {
    if (!m_tags.IsNumber())
        common.Drop(DxfDropReason::NotANumber);
    else if (!std::isfinite(m_tags.Real()))
        common.Drop(DxfDropReason::NotFinite);
    else if (m_tags.Code() < 40)
        common.Drop(DxfDropReason::TooFar);
}

/// Takes an entity whose record is over. The record is complete if another group follows: at the end of a
/// file that was cut nobody knows what is missing.
template <class T>
void DxfReader::Take(const Common& common, const T& entity, bool complete) {
    if (!complete) return;
    if (common.bad)
        NoteDrop(common);
    else
        AddEntity(common, m_drawing.m_arena.New<T>(entity));
}

void DxfReader::AddEntity(const Common& common, ACAD_ENTITY* entity) {
    if (m_drawing.m_arrEntity.GetSize() == std::numeric_limits<int>::max()) {
        m_bTooMany = true;
        return;
    }
    entity->m_pLayer = common.layer ? common.layer : LayerNamed("0");
    entity->m_pKind = common.kind;
    entity->m_nColor = common.color;
    entity->m_bPaperSpace = common.paperSpace;
    m_drawing.m_arrEntity.Add(entity);
}

void DxfReader::NoteDrop(const Common& common) {
    DxfLayer* const layer = common.layer ? common.layer : LayerNamed("0");
    ++layer->m_nDropped;
    ++m_drawing.m_nDropped[static_cast<int>(common.reason)];
    if (m_drawing.m_drops.size() < kDropsKept)
        m_drawing.m_drops.push_back({common.reason, common.kind, layer, common.line, common.byte});
}

// --- the ENTITIES section ---------------------------------------------------------------------------------

void DxfReader::ReadEntities() {
    while (m_bMore && m_tags.Code() != 0) Next();
    while (m_bMore && !AtSectionEnd() && !m_bTooMany) ReadEntity();
}

void DxfReader::ReadEntity() {
    const std::string_view kind = m_tags.Word();
    if (kind == "LINE") return ReadLine();
    if (kind == "LWPOLYLINE") return ReadLwPolyline();
    if (kind == "POLYLINE") return ReadPolyline();
    if (kind == "ARC") return ReadArc();
    if (kind == "CIRCLE") return ReadCircle();
    if (kind == "TEXT") return ReadText();
    if (kind == "INSERT") return ReadInsert();
    if (kind == "HATCH") return ReadHatch();
    if (kind == "DIMENSION") return ReadDimension();
    if (kind == "SOLID") return ReadSolid(false);
    if (kind == "3DFACE") return ReadSolid(true);
    // Parts of the entity before them: attributes of an INSERT, the end of a sequence, a vertex too many.
    if (kind == "ATTRIB" || kind == "SEQEND" || kind == "VERTEX") return SkipRecord();
    ReadOther();
}

void DxfReader::SkipRecord() { m_bMore = m_tags.NextZero(); }

// LINE, 3DFACE and 3D polylines stand in world coordinates whatever their extrusion.
void DxfReader::ReadLine() {
    Common common = Begin();
    ACAD_LINE line;
    while (NextGroup(common)) {
        switch (m_tags.Code()) {
            case 10: line.m_x1 = m_tags.Real(); break;
            case 20: line.m_y1 = m_tags.Real(); break;
            case 30: line.m_z1 = m_tags.Real(); break;
            case 11: line.m_x2 = m_tags.Real(); break;
            case 21: line.m_y2 = m_tags.Real(); break;
            case 31: line.m_z2 = m_tags.Real(); break;
            default: break;
        }
    }
    Take(common, line, m_bMore);
}

void DxfReader::ReadText() {
    Common common = Begin();
    ACAD_TEXT text;
    while (NextGroup(common)) {
        switch (m_tags.Code()) {
            case 1: text.m_strText = StoredText(m_tags.Text()); break;
            case 10: text.m_x = m_tags.Real(); break;
            case 20: text.m_y = m_tags.Real(); break;
            case 30: text.m_z = m_tags.Real(); break;
            case 40: text.m_dHeight = m_tags.Real(); break;
            case 50: text.m_dAngle = m_tags.Real(); break;
            default: break;
        }
    }
    if (common.TurnedOver()) {
        text.m_x = -text.m_x;
        text.m_z = -text.m_z;
        text.m_dAngle = 180 - text.m_dAngle;
    }
    Take(common, text, m_bMore);
}

void DxfReader::ReadCircle() {
    Common common = Begin();
    ACAD_CIRCLE circle;
    while (NextGroup(common)) {
        switch (m_tags.Code()) {
            case 10: circle.m_x = m_tags.Real(); break;
            case 20: circle.m_y = m_tags.Real(); break;
            case 30: circle.m_z = m_tags.Real(); break;
            case 40: circle.m_dRadius = m_tags.Real(); break;
            default: break;
        }
    }
    if (std::abs(circle.m_dRadius) > kFarthest) common.Drop(DxfDropReason::TooFar);
    if (common.TurnedOver()) {
        circle.m_x = -circle.m_x;
        circle.m_z = -circle.m_z;
    }
    Take(common, circle, m_bMore);
}

void DxfReader::ReadArc() {
    Common common = Begin();
    ACAD_ARC arc;
    while (NextGroup(common)) {
        switch (m_tags.Code()) {
            case 10: arc.m_x = m_tags.Real(); break;
            case 20: arc.m_y = m_tags.Real(); break;
            case 30: arc.m_z = m_tags.Real(); break;
            case 40: arc.m_dRadius = m_tags.Real(); break;
            case 50: arc.m_dStart = m_tags.Real(); break;
            case 51: arc.m_dEnd = m_tags.Real(); break;
            default: break;
        }
    }
    if (std::abs(arc.m_dRadius) > kFarthest) common.Drop(DxfDropReason::TooFar);
    if (common.TurnedOver()) {  // seen from below it runs clockwise: the ends change places
        arc.m_x = -arc.m_x;
        arc.m_z = -arc.m_z;
        const double start = arc.m_dStart;
        arc.m_dStart = 180 - arc.m_dEnd;
        arc.m_dEnd = 180 - start;
    }
    Take(common, arc, m_bMore);
}

// --- polylines --------------------------------------------------------------------------------------------

/// The old form: its vertices are records of their own, up to a SEQEND or, where that is missing, to any
/// other record. The point of the POLYLINE itself is none of the corners.
void DxfReader::ReadPolyline() {
    Common common = Begin();
    int flags = 0;
    while (NextGroup(common))
        if (m_tags.Code() == 70) flags = m_tags.Integer();
    m_vertices.clear();
    while (m_bMore && m_tags.Word() == "VERTEX") ReadVertex(common);
    const bool complete = m_bMore;
    if ((flags & (kMesh | kPolyface)) != 0) {
        common.kind = KindNamed("POLYLINE (mesh)");
        Take(common, ACAD_ENTITY(), complete);
    } else {
        const bool is3D = (flags & k3D) != 0;
        TakePolyline(common, (flags & kClosed) != 0, is3D, !is3D && common.TurnedOver(), complete);
    }
    if (m_bMore && m_tags.Word() == "SEQEND") SkipRecord();
}

void DxfReader::ReadVertex(Common& polyline) {
    Common common;  // its layer and the like say nothing
    ACAD_VERTEX vertex;
    int flags = 0;
    while (NextGroup(common)) {
        switch (m_tags.Code()) {
            case 10: vertex.m_x = m_tags.Real(); break;
            case 20: vertex.m_y = m_tags.Real(); break;
            case 42: vertex.m_dBulge = m_tags.Real(); break;
            case 70: flags = m_tags.Integer(); break;
            default: break;
        }
    }
    if (common.bad) polyline.Drop(common.reason);
    if ((flags & kSplineFrame) == 0) m_vertices.push_back(vertex);
}

/// The light form: each group 10 begins a corner. The count that it gives (90) is wrong in some files.
void DxfReader::ReadLwPolyline() {
    Common common = Begin();
    bool closed = false;
    m_vertices.clear();
    while (NextGroup(common)) {
        const int code = m_tags.Code();
        if (code == 10) {
            m_vertices.push_back({m_tags.Real(), 0, 0});
        } else if (code == 70) {
            closed = (m_tags.Integer() & kClosed) != 0;
        } else if (m_vertices.empty()) {
            continue;
        } else if (code == 20) {
            m_vertices.back().m_y = m_tags.Real();
        } else if (code == 42) {
            m_vertices.back().m_dBulge = m_tags.Real();
        }
    }
    TakePolyline(common, closed, false, common.TurnedOver(), m_bMore);
}

void DxfReader::TakePolyline(const Common& common, bool closed, bool is3D, bool flipped, bool complete) {
    if (!complete || common.bad) return Take(common, ACAD_POLYLINE(), complete);
    if (flipped) {
        for (ACAD_VERTEX& v : m_vertices) {
            v.m_x = -v.m_x;
            v.m_dBulge = -v.m_dBulge;
        }
    }
    if (m_vertices.size() > std::numeric_limits<int>::max()) {
        m_bTooMany = true;
        return;
    }
    ACAD_POLYLINE polyline;
    polyline.m_pVertices = m_drawing.m_arena.Copy(std::span<const ACAD_VERTEX>(m_vertices));
    polyline.m_nVertices = static_cast<std::uint32_t>(m_vertices.size());
    polyline.m_bClosed = closed;
    polyline.m_b3D = is3D;
    Take(common, polyline, true);
}

// --- what only stands in the list -------------------------------------------------------------------------

void DxfReader::ReadSolid(bool is3dFace) {
    Common common = Begin();
    ACAD_SOLID solid;
    while (NextGroup(common)) {
        const int corner = m_tags.Code() % 10;
        if (corner > 3) continue;
        switch (m_tags.Code() / 10) {
            case 1: solid.m_x[corner] = m_tags.Real(); break;
            case 2: solid.m_y[corner] = m_tags.Real(); break;
            case 3: solid.m_z[corner] = m_tags.Real(); break;
            default: break;
        }
    }
    if (is3dFace) {
        ACAD_3DFACE face;
        std::copy_n(solid.m_x, 4, face.m_x);
        std::copy_n(solid.m_y, 4, face.m_y);
        std::copy_n(solid.m_z, 4, face.m_z);
        return Take(common, face, m_bMore);
    }
    if (common.TurnedOver()) {
        for (double& x : solid.m_x) x = -x;
        for (double& z : solid.m_z) z = -z;
    }
    Take(common, solid, m_bMore);
}

void DxfReader::ReadInsert() {
    Common common = Begin();
    ACAD_INSERT insert;
    while (NextGroup(common)) {
        switch (m_tags.Code()) {
            case 2: insert.m_strBlock = StoredText(m_tags.Word()); break;
            case 10: insert.m_x = m_tags.Real(); break;
            case 20: insert.m_y = m_tags.Real(); break;
            case 30: insert.m_z = m_tags.Real(); break;
            case 41: insert.m_dScaleX = m_tags.Real(); break;
            case 42: insert.m_dScaleY = m_tags.Real(); break;
            case 43: insert.m_dScaleZ = m_tags.Real(); break;
            case 50: insert.m_dAngle = m_tags.Real(); break;
            default: break;
        }
    }
    if (common.TurnedOver()) {  // half a turn about y, written as a rotation and a mirroring
        insert.m_x = -insert.m_x;
        insert.m_z = -insert.m_z;
        insert.m_dAngle = 180 - insert.m_dAngle;
        insert.m_dScaleY = -insert.m_dScaleY;
        insert.m_dScaleZ = -insert.m_dScaleZ;
    }
    Take(common, insert, m_bMore);
}

void DxfReader::ReadDimension() {
    Common common = Begin();
    ACAD_DIMENSION dimension;
    while (NextGroup(common)) {
        switch (m_tags.Code()) {
            case 1: dimension.m_strText = StoredText(m_tags.Text()); break;
            case 10: dimension.m_x = m_tags.Real(); break;
            case 20: dimension.m_y = m_tags.Real(); break;
            case 11: dimension.m_xText = m_tags.Real(); break;
            case 21: dimension.m_yText = m_tags.Real(); break;
            case 13: dimension.m_x1 = m_tags.Real(); break;
            case 23: dimension.m_y1 = m_tags.Real(); break;
            case 14: dimension.m_x2 = m_tags.Real(); break;
            case 24: dimension.m_y2 = m_tags.Real(); break;
            default: break;
        }
    }
    if (common.TurnedOver()) dimension.m_xText = -dimension.m_xText;  // the others are world points
    Take(common, dimension, m_bMore);
}

void DxfReader::ReadHatch() {
    Common common = Begin();
    ACAD_HATCH hatch;
    while (NextGroup(common)) {
        if (m_tags.Code() == 2) hatch.m_strPattern = StoredText(m_tags.Word());
        if (m_tags.Code() == 70) hatch.m_bSolid = m_tags.Integer() == 1;
    }
    Take(common, hatch, m_bMore);
}

void DxfReader::ReadOther() {
    Common common = Begin();
    while (NextGroup(common)) {}
    Take(common, ACAD_ENTITY(), m_bMore);
}
