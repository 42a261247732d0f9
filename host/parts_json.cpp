#include "host/parts_json.h"

#include <numbers>

#include "fields/chang.h"
#include "fields/gj_chang.h"
#include "geometry/fregion.h"
#include "host/field_look.h"
#include "host/part_kinds.h"
#include "host/svg_text.h"
#include "host/tvo_rider.h"
#include "model/draw_graph.h"
#include "model/gj_text.h"

namespace {

Json BoxJson(CGouJianEx& part) {
    if (part.GetDrawGraph()->m_aEntity.IsEmpty() && !part.m_bSelfDraw) return nullptr;
    const CFRect box = part.GetFrect();
    return {JsonNumber(box.m_fMinX), JsonNumber(box.m_fMinY), JsonNumber(box.m_fMaxX),
            JsonNumber(box.m_fMaxY)};
}

void AddText(Json& json, const CGjText& text) {
    json["x"] = JsonNumber(text.m_fX);
    json["y"] = JsonNumber(text.m_fY);
    json["height"] = JsonNumber(text.m_fHeight);
    json["angle"] =
        JsonNumber(static_cast<float>(static_cast<double>(text.m_fAngle) * 180 / std::numbers::pi));
    json["colour"] = SvgColor(COLORREF{text.m_crColor});
    json["text"] = text.m_strText.Std();
}

void AddRider(Json& json, CTvoRider& rider) {
    json["line"] = rider.m_dwLineID;
    json["width"] = JsonNumber(rider.m_fWidth);
    CFRegion outline;
    rider.GetDiTuRegion(rider.m_fWidth, outline);
    json["outline"] = Json::array();
    for (const CFShoot& v : outline)
        json["outline"].push_back({JsonNumber(v.x), JsonNumber(v.y), JsonNumber(v.c)});
}

void AddField(Json& json, const CGjChang& field) {
    json["display"] = FieldDisplayName(field.m_nDisplay);
    json["scheme"] = field.m_nColorScheme;
    json["nodes"] = field.m_pChang->m_arrNode.GetSize();
    json["triangles"] = field.m_pChang->m_arrTri.GetSize();
}

/// The one primitive of a graphics component.
void AddPrimitive(Json& json, CGraphEntity& entity) {
    const auto put = [&](const char* name, float value) { json[name] = JsonNumber(value); };
    const auto round = [&](const auto& shape) {
        put("x", shape.m_fX);
        put("y", shape.m_fY);
        put("r", shape.m_fR);
    };
    switch (entity.GetGraphType()) {
        case kGraphPoint: {
            const auto& point = static_cast<CGraph_Point&>(entity);
            put("x", point.m_fX);
            put("y", point.m_fY);
            break;
        }
        case kGraphLine: {
            const auto& line = static_cast<CGraph_Line&>(entity);
            put("x1", line.m_fX1);
            put("y1", line.m_fY1);
            put("x2", line.m_fX2);
            put("y2", line.m_fY2);
            put("width", line.m_fWidth);
            break;
        }
        case kGraphArc: {
            const auto& arc = static_cast<CGraph_Arc&>(entity);
            round(arc);
            put("start", arc.m_fStart);
            put("end", arc.m_fEnd);
            put("width", arc.m_fWidth);
            break;
        }
        case kGraphCircle:
            round(static_cast<CGraph_Circle&>(entity));
            put("width", static_cast<CGraph_Circle&>(entity).m_fWidth);
            break;
        case kGraphCircleRgn:
            round(static_cast<CGraph_CircleRgn&>(entity));
            break;
        case kGraphPolyRgn:
            for (const CFPoint& p : static_cast<CGraph_PolyRgn&>(entity).m_aPoint)
                json["points"].push_back({JsonNumber(p.x), JsonNumber(p.y)});
            break;
        default:
            break;
    }
    json["colour"] = SvgColor(COLORREF{entity.m_dwColor});
}

}  // namespace

Json PartJson(CGouJianEx& part) {
    const PartKind* kind = FindPartKind(part.get_Gjlx());
    Json json = {{"type", kind ? kind->one : "component"},
                 {"id", part.m_dwGouJianID},
                 {"no", part.m_dwGouJianNO},
                 {"tag", part.m_dwTag},
                 {"status", part.get_m_byteStatus()},
                 {"storey", part.m_nCeng},
                 {"box", BoxJson(part)}};
    CDrawGraph& graph = *part.GetDrawGraph();
    if (auto* text = dynamic_cast<CGjText*>(&part)) AddText(json, *text);
    else if (auto* rider = dynamic_cast<CTvoRider*>(&part)) AddRider(json, *rider);
    else if (const auto* field = dynamic_cast<const CGjChang*>(&part); field && field->m_pChang)
        AddField(json, *field);
    else if (graph.m_bFixed && graph.m_aEntity.GetSize() == 1) AddPrimitive(json, *graph.m_aEntity[0]);
    return json;
}
