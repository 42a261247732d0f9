// The cloud and the ruler of a field.
#include "fields/chang.h"
#include "fields/gj_chang.h"
#include "geometry/fcoor.h"
#include "model/draw_graph.h"
#include "model/profile.h"
#include "platform/canvas/client_dc.h"
#include "view/tvo_view_mgr.h"

int CGjChang::Draw(CDC* dc, CFCoor* coor) {
    if (!m_pChang) return 1;
    m_pChang->m_fValueScale = m_fValueScale;
    if (m_nDisplay == FIELD_DISPLAY_CLOUD) GenerateCloudGraph(dc, coor);
    DrawScaleRuler(dc, coor);
    return 1;
}

void CGjChang::GenerateCloudGraph(CDC* dc, CFCoor* coor) {
    if (!m_bBitmapMade || NeedRecreateBitmap(coor->GetScale()) || m_dcCloud.Density() < dc->Density()) CreateCloudBitmap(dc, coor);
    m_bBitmapMade = 1;
    const CRect place = coor->FPtoDP(m_rect);
    const CPoint anchor = coor->FPtoDP(m_ptAnchor);
    // A field whose picture is less than a pixel wide still shows.
    const int width = std::max(place.Width(), 1), height = std::max(place.Height(), 1);
    TransparentBlt2(dc, place.left, SaturatedInt(static_cast<double>(anchor.y) - height), width, height,
                    &m_dcCloud, 0, 0, m_nBitmapWidth, m_nBitmapHeight,
                    COLORREF{g_cTvoProfile.m_crBackground});
}

void CGjChang::CreateCloudBitmap(CDC* dc, CFCoor* coor) {
    if (!m_pChang) return;
    m_dcCloud.DeleteDC();
    m_pChang->m_nColorScheme = m_nColorScheme;
    // The size of the bitmap is told for a field in metres whatever m_fCoordScale is: the blit stretches it.
    m_pChang->DrawBaseMap(dc, &m_dcCloud, coor, m_nBitmapWidth, m_nBitmapHeight, 1000.0f);
    m_fBitmapScale = coor->GetScale();
}

void CGjChang::CreateScaleRuler(CDC* dc, CFCoor* coor) {
    if (!m_bRulerDirty) return;
    m_bRulerDirty = 0;
    m_dcRuler.DeleteDC();
    CBitmap bitmap;
    if (!bitmap.CreateCompatibleBitmap(dc, m_nRulerWidth, m_nRulerHeight)) return;
    m_dcRuler.CreateCompatibleDC(dc);
    m_dcRuler.Attach(bitmap.Surface());  // the context shares the picture and keeps it
    const COLORREF background = COLORREF{g_cTvoProfile.m_crBackground};
    m_dcRuler.SetBkColor(background);
    m_pChang->m_nColorScheme = m_nColorScheme;
    m_pChang->DrawRuler(&m_dcRuler, CRect(0, 0, m_nRulerWidth, m_nRulerHeight), coor, background);
}

void CGjChang::DrawScaleRuler(CDC* dc, CFCoor* coor) {
    if (m_dcRuler.Density() != dc->Density()) m_bRulerDirty = 1;
    CreateScaleRuler(dc, coor);
    TransparentBlt2(dc, 0, 0, m_nRulerWidth, m_nRulerHeight, &m_dcRuler, 0, 0, m_nRulerWidth, m_nRulerHeight,
                    COLORREF{g_cTvoProfile.m_crBackground});
}

int CGjChang::ReGen(CTvoViewMgr* mgr) {
    if (!m_pChang) return CGouJianEx::ReGen(mgr);
    if (!mgr) {
        // The bitmaps need a view and wait for one. The display list is filled, so that a model without a
        // window can be written out.
        CGouJianEx::ReGen(nullptr);
        m_bBitmapMade = 0;
        CDrawGraph* const graph = GetDrawGraph();
        graph->RemoveAll();
        return DrawGraph(graph);
    }
    {
        CClientDC dc(mgr);
        m_pChang->m_fValueScale = m_fValueScale;
        m_bBitmapMade = 1;
        CreateCloudBitmap(&dc, &mgr->m_cCoor);
        m_bRulerDirty = 1;
        CreateScaleRuler(&dc, &mgr->m_cCoor);
    }
    return CGouJianEx::ReGen(mgr);
}

void CGjChang::DisplayChang(CTvoViewMgr* mgr, FIELD_DISPLAY display) {
    SetDisplayType(display);
    ReGen(mgr);
    if (!mgr) return;
    mgr->m_bBaseMapDirty = 1;
    mgr->Invalidate();
}
