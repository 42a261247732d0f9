// Painting the model, and the graphics components that a host paints into it.
#include "model/by_identity.h"
#include "model/draw_graph.h"
#include "model/gj_text.h"
#include "model/tvo_data_base.h"
#include "shell/tvo_frame_base.h"
#include "view/tvo_view_mgr.h"

// --- painting ---------------------------------------------------------------------------------------------

void CTvoDataBase::DrawOne(CDC* dc, CFCoor* coor, CGouJianEx* obj) {
    if (!FindGouJian(obj->get_m_dwGouJianID()) || !IsVisible(obj) || !obj->IsPhysicalGouJian()) return;
    if (obj->m_bDrawBoth) {
        obj->Draw(dc, coor);
        obj->CGouJianEx::Draw(dc, coor);
    } else if (obj->m_bSelfDraw) {
        obj->Draw(dc, coor);
    } else {
        obj->CGouJianEx::Draw(dc, coor);
    }
}

void CTvoDataBase::DrawOneType(CList<CGouJianEx*, CGouJianEx*>& objects, CDC* dc, CFCoor* coor) {
    for (POSITION p = objects.GetHeadPosition(); p;) DrawOne(dc, coor, objects.GetNext(p));
}

void CTvoDataBase::Draw(CDC* dc, CFCoor* coor, unsigned char excludeType, unsigned char status) {
    CTvoViewMgr* view = View();
    if (!view) return;
    CList<CGouJianEx*, CGouJianEx*> nodes, lines, others;
    // Undo changes the order of the set, and must not change what lies on top. Few of a status other than the usual
    // one are in it, so that this is asked first.
    const auto drawn = [&](CGouJianEx* obj) {
        return obj->get_m_byteStatus() == status && obj->get_Gjlx() != excludeType && IsVisible(obj);
    };
    for (CGouJianEx* obj : ByIdentity(view->m_mapViewPort, drawn)) {
        if (obj->get_Gjlx() == GJLX_NET_NODE)
            nodes.AddTail(obj);
        else if (obj->get_Gjlx() == GJLX_NET_LINE)
            lines.AddTail(obj);
        else if (obj->IsPhysicalGouJian() == 1)
            others.AddTail(obj);
    }
    DrawOneType(lines, dc, coor);
    DrawOneType(others, dc, coor);
    DrawOneType(nodes, dc, coor);
}

void CTvoDataBase::DrawSelected(CDC* dc, CFCoor* coor, unsigned char) {
    CTvoViewMgr* view = View();
    if (!view) return;
    for (POSITION p = view->m_pSelectedList->GetHeadPosition(); p;) view->m_pSelectedList->GetNext(p)->Draw(dc, coor);
}

// --- graphics components ----------------------------------------------------------------------------------

CGouJianEx* CTvoDataBase::AddGraphics(CGraphEntity* entity, unsigned char type, unsigned long colour, unsigned long tag,
                                      unsigned char status, int snap) {
    auto* obj = new CGouJianEx;  // owned by the container from AddGouJian on
    CDrawGraph* graph = obj->GetDrawGraph();
    graph->m_bFixed = 1;  // filled by hand: never generated anew
    graph->Append(entity);
    entity->SetColor(colour);
    entity->SetSnap(snap);
    Enroll(obj, type, tag, status);
    return obj;
}

void CTvoDataBase::Enroll(CGouJianEx* obj, unsigned char type, unsigned long tag, unsigned char status) {
    obj->m_dwTag = static_cast<std::uint32_t>(tag & 0xFFFFFFFF);
    obj->set_Gjlx(type);
    obj->set_m_dwGouJianID(GetNextID(type));
    obj->set_m_byteStatus(status);
    obj->set_m_dwGouJianNO(obj->get_m_dwGouJianID() & 0xFFFFFF);
    obj->m_pDataBase = this;
    AddGouJian(obj);
}

CGouJianEx* CTvoDataBase::DrawPoint(float x, float y, unsigned long colour, unsigned long tag, unsigned char status, int snap) {
    return AddGraphics(new CGraph_Point(x, y), GJLX_POINT, colour, tag, status, snap);
}

CGouJianEx* CTvoDataBase::DrawLine(float x1, float y1, float x2, float y2, float width, unsigned long colour,
                                   unsigned long tag, unsigned char status, int snap) {
    return AddGraphics(new CGraph_Line(x1, y1, x2, y2, width), GJLX_LINE, colour, tag, status, snap);
}

CGouJianEx* CTvoDataBase::DrawArc(float x, float y, float r, float start, float end, float width, unsigned long colour,
                                  unsigned long tag, unsigned char status, int snap) {
    return AddGraphics(new CGraph_Arc(x, y, r, start, end, width), GJLX_ARC, colour, tag, status, snap);
}

CGouJianEx* CTvoDataBase::DrawCircle(float x, float y, float r, float width, unsigned long colour, unsigned long tag,
                                     unsigned char status, int snap) {
    return AddGraphics(new CGraph_Circle(x, y, r, width), GJLX_CIRCLE, colour, tag, status, snap);
}

CGouJianEx* CTvoDataBase::DrawCircleRgn(float x, float y, float r, unsigned long colour, unsigned long tag,
                                        unsigned char status, int snap) {
    return AddGraphics(new CGraph_CircleRgn(x, y, r), GJLX_CIRCLE_RGN, colour, tag, status, snap);
}

CGouJianEx* CTvoDataBase::DrawPolygonRgn(CArray<CFPoint, CFPoint>& points, unsigned long colour, unsigned long tag,
                                         unsigned char status, int snap) {
    return AddGraphics(new CGraph_PolyRgn(points), GJLX_POLYGON_RGN, colour, tag, status, snap);
}

CGjText* CTvoDataBase::DrawTextA(float x, float y, CString text, unsigned long tag, unsigned char status, float height,
                                 float angle, const unsigned long* colour, int) {
    auto* obj = new CGjText;  // owned by the container from AddGouJian on
    obj->m_fX = x;
    obj->m_fY = y;
    obj->m_fHeight = height;
    obj->m_fAngle = angle;
    obj->m_strText = std::move(text);
    if (colour) obj->m_crColor = static_cast<std::uint32_t>(*colour & 0xFFFFFFFF);
    Enroll(obj, GJLX_TEXT, tag, status);
    return obj;
}

// --- texts ------------------------------------------------------------------------------------------------

void CTvoDataBase::ReplaceTextHeights(CArray<unsigned char, unsigned char>* types, float factor, bool scale) {
    CArray<unsigned char> all;
    if (!types) {
        for (int type = 1; type <= 254; ++type) all.Add(static_cast<unsigned char>(type));
        types = &all;
    }
    bool changed = false;
    for (const unsigned char type : *types) {
        m_mapFamily[type].ForEach([&](unsigned long, CGouJianEx* obj) {
            if (!obj->m_pDrawGraph && !obj->m_bGraphBuilt) return;  // nothing drawn yet, so no text
            for (CGraphEntity* entity : obj->GetDrawGraph()->m_aEntity) {
                if (entity->GetGraphType() != kGraphText) continue;
                auto* text = static_cast<CGraph_Text*>(entity);
                text->m_fHeight = scale ? text->m_fHeight * factor : factor;
                if (text->m_fHeight < 0) text->m_fHeight = 0;
                obj->TellWatcher();
                changed = true;
            }
        });
    }
    if (changed && g_pCurrentView) g_pCurrentView->Invalidate();
}

void CTvoDataBase::ScaleText(float factor, CArray<unsigned char, unsigned char>* types) { ReplaceTextHeights(types, factor, true); }
void CTvoDataBase::SetTextHeight(float height, CArray<unsigned char, unsigned char>* types) { ReplaceTextHeights(types, height, false); }
void CTvoDataBase::ScaleTextGouJianOnly(float factor) {
    CArray<unsigned char> types;
    types.Add(GJLX_TEXT);
    ScaleText(factor, &types);
}
void CTvoDataBase::SetTextHeightTextGouJianOnly(float height) {
    CArray<unsigned char> types;
    types.Add(GJLX_TEXT);
    SetTextHeight(height, &types);
}

float CTvoDataBase::GetTextWidth(CString text, float height) { return ModelTextWidth(text, height); }
