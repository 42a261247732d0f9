// The entities of a drawing in its file.
#include <algorithm>

#include "platform/dxf/dxf.h"
#include "platform/dxf/dxf_text.h"
#include "platform/dxf/dxf_writer.h"

namespace {

constexpr std::uint32_t kModelSpace = 0x1F, kPaperSpace = 0x1B;  // handles of their block records

/// The width of a polyline where it has gone through a share of its pieces.
double WidthAt(const ACAD_POLYLINE& polyline, std::size_t piece, std::size_t pieces) {
    const double start = double{polyline.m_fStartWidth}, end = double{polyline.m_fEndWidth};
    return pieces == 0 ? start
                       : start + (end - start) * static_cast<double>(piece) / static_cast<double>(pieces);
}

}  // namespace

void DxfWriter::Entities() {
    for (const ACAD_ENTITY* entity : m_drawing.GetEntities()) Entity(*entity);
}

void DxfWriter::Entity(const ACAD_ENTITY& entity) {
    switch (entity.GetType()) {
        case kAcadPoint: {
            const auto& point = static_cast<const ACAD_POINT&>(entity);
            Head(entity, "POINT", "AcDbPoint");
            Point(10, point.m_x, point.m_y, point.m_z, entity.m_bFloats);
            break;
        }
        case kAcadLine:
            Line(static_cast<const ACAD_LINE&>(entity));
            break;
        case kAcadArc: {
            const auto& arc = static_cast<const ACAD_ARC&>(entity);
            Head(entity, "ARC", "AcDbCircle");
            Point(10, arc.m_x, arc.m_y, arc.m_z, entity.m_bFloats);
            Number(40, arc.m_dRadius, entity.m_bFloats);
            Class("AcDbArc");
            Number(50, arc.m_dStart, entity.m_bFloats);
            Number(51, arc.m_dEnd, entity.m_bFloats);
            break;
        }
        case kAcadCircle: {
            const auto& circle = static_cast<const ACAD_CIRCLE&>(entity);
            Head(entity, "CIRCLE", "AcDbCircle");
            Point(10, circle.m_x, circle.m_y, circle.m_z, entity.m_bFloats);
            Number(40, circle.m_dRadius, entity.m_bFloats);
            break;
        }
        case kAcadPolyline: {
            const auto& polyline = static_cast<const ACAD_POLYLINE&>(entity);
            if (m_bHandles) LightPolyline(polyline);
            else OldPolyline(polyline);
            break;
        }
        case kAcadText:
            Text(static_cast<const ACAD_TEXT&>(entity));
            break;
        default:
            break;
    }
}

const std::string& DxfWriter::LayerName(const ACAD_ENTITY& entity) {
    if (m_pLayer != entity.m_pLayer) {
        m_pLayer = entity.m_pLayer;
        m_strLayer = EncodeDxfText(entity.m_pLayer->m_strName);
    }
    return m_strLayer;
}

void DxfWriter::Head(const ACAD_ENTITY& entity, const char* kind, const char* className) {
    m_sink.Text(0, kind);
    if (m_bHandles) {
        m_sink.Handle(5, m_nNextHandle++);
        m_sink.Handle(330, entity.m_bPaperSpace ? kPaperSpace : kModelSpace);
        Class("AcDbEntity");
    }
    if (entity.m_bPaperSpace) m_sink.Integer(67, 1);
    m_sink.Text(8, LayerName(entity));
    if (entity.m_nLType != 0 && entity.m_nLType < m_lineTypeNames.size())
        m_sink.Text(6, m_lineTypeNames[entity.m_nLType]);
    if (entity.m_nColor != kAcadColorByLayer) m_sink.Integer(62, entity.m_nColor);
    Class(className);
}

void DxfWriter::Line(const ACAD_LINE& line) {
    Head(line, "LINE", "AcDbLine");
    Point(10, line.m_x1, line.m_y1, line.m_z1, line.m_bFloats);
    Point(11, line.m_x2, line.m_y2, line.m_z2, line.m_bFloats);
}

void DxfWriter::Text(const ACAD_TEXT& text) {
    const std::size_t style = std::min<std::size_t>(text.m_nStyle, m_styleNames.size() - 1);
    Head(text, "TEXT", "AcDbText");
    Point(10, text.m_x, text.m_y, text.m_z, text.m_bFloats);
    Number(40, text.m_dHeight, text.m_bFloats);
    m_sink.Text(1, EncodeDxfText(text.m_strText));
    Number(50, text.m_dAngle, text.m_bFloats);
    // A text without a width of its own has 1, whatever its style says.
    if (style > 0) m_sink.Real(41, m_drawing.GetStyles()[style - 1].m_fWidthFactor);
    m_sink.Text(7, m_styleNames[style]);
    Class("AcDbText");
}

void DxfWriter::OldPolyline(const ACAD_POLYLINE& polyline) {
    const auto vertices = polyline.Vertices();
    const std::size_t pieces = vertices.size() - (polyline.m_bClosed || vertices.empty() ? 0 : 1);
    const bool even = polyline.m_fStartWidth == polyline.m_fEndWidth;
    Head(polyline, "POLYLINE", "");
    m_sink.Integer(66, 1);  // vertices follow
    Point(10, 0, 0, 0, true);
    m_sink.Integer(70, (polyline.m_bClosed ? 1 : 0) | (polyline.m_b3D ? 8 : 0));
    m_sink.Real(40, polyline.m_fStartWidth);
    m_sink.Real(41, polyline.m_fEndWidth);
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        m_sink.Text(0, "VERTEX");
        m_sink.Text(8, LayerName(polyline));
        Point(10, vertices[i].m_x, vertices[i].m_y, 0, polyline.m_bFloats);
        if (!even && i < pieces) {
            m_sink.Real(40, WidthAt(polyline, i, pieces));
            m_sink.Real(41, WidthAt(polyline, i + 1, pieces));
        }
        if (polyline.m_b3D) m_sink.Integer(70, 32);
        if (vertices[i].m_dBulge != 0) m_sink.Real(42, vertices[i].m_dBulge);
    }
    m_sink.Text(0, "SEQEND");
    m_sink.Text(8, LayerName(polyline));
}

void DxfWriter::LightPolyline(const ACAD_POLYLINE& polyline) {
    const auto vertices = polyline.Vertices();
    const std::size_t pieces = vertices.size() - (polyline.m_bClosed || vertices.empty() ? 0 : 1);
    const bool even = polyline.m_fStartWidth == polyline.m_fEndWidth;
    Head(polyline, "LWPOLYLINE", "AcDbPolyline");
    m_sink.Integer(90, static_cast<std::int64_t>(vertices.size()));
    m_sink.Integer(70, polyline.m_bClosed ? 1 : 0);
    if (even) m_sink.Real(43, polyline.m_fStartWidth);
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        Number(10, vertices[i].m_x, polyline.m_bFloats);
        Number(20, vertices[i].m_y, polyline.m_bFloats);
        if (!even && i < pieces) {
            m_sink.Real(40, WidthAt(polyline, i, pieces));
            m_sink.Real(41, WidthAt(polyline, i + 1, pieces));
        }
        if (vertices[i].m_dBulge != 0) m_sink.Real(42, vertices[i].m_dBulge);
    }
}
