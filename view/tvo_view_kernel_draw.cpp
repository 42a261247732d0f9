// CTvoViewKernel: the base map and what is drawn over it.
#include <algorithm>
#include <iterator>

#include "fields/backgrnd.h"
#include "model/goujian.h"
#include "model/profile.h"
#include "model/tvo_data_base.h"
#include "platform/canvas/client_dc.h"
#include "platform/window_system.h"
#include "view/dt_work_ex.h"
#include "view/rubber_line.h"
#include "view/select_command.h"
#include "view/tvo_view_kernel.h"

const int CURSOR_SIZE = 8;

namespace {

constexpr COLORREF kWhite = RGB(255, 255, 255);

/// A pen and a raster mode while it lives.
class Drawing {
public:
    Drawing(CDC& dc, COLORREF color, int mode) : m_dc(dc), m_pen(PS_SOLID, 1, color) {
        m_oldPen = m_dc.SelectObject(&m_pen);
        m_oldMode = m_dc.SetROP2(mode);
    }
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;
    ~Drawing() {
        m_dc.SetROP2(m_oldMode);
        m_dc.SelectObject(m_oldPen);
    }

private:
    CDC& m_dc;
    CPen m_pen;
    CPen* m_oldPen;
    int m_oldMode;
};

std::shared_ptr<CSurface> Surface(int width, int height, int density) {
    return std::make_shared<CSurface>(std::max(width, 1), std::max(height, 1), density);
}

}  // namespace

// ---- the base map -----------------------------------------------------------------------------------------

void CTvoViewKernel::CreateBaseMap(CDC*) {
    const CRect client = GetClientRect();
    const bool grown = m_nClientWidth != 0 && (client.right > m_nClientWidth || client.bottom > m_nClientHeight);
    m_nClientWidth = client.right;
    m_nClientHeight = client.bottom;
    m_cCoor.m_rcClient = client;
    // What a larger window shows more of is not in the set yet.
    if (grown) RefreshViewPort();
    m_cBaseMap.DeleteDC();
    m_cBaseMap.Attach(Surface(client.right, client.bottom, ClientSurface() ? ClientSurface()->Density() : 1));
    m_cBaseMap.Surface()->Fill(PixelFromColor(g_cTvoProfile.m_crBackground));
    Draw_Axis(&m_cBaseMap);
    if (m_pDataBase) {
        if (m_bShowGrid == 1) m_pDataBase->GetBackgrnd().Draw(&m_cBaseMap, &m_cCoor, 0);
        // Muted ones below, selected ones on top.
        for (const unsigned char status : {std::uint8_t{3}, std::uint8_t{0}, std::uint8_t{1}})
            m_pDataBase->Draw(&m_cBaseMap, &m_cCoor, 255, status);
    }
    const int saved = m_cBaseMap.SaveDC();
    OnOverlapBaseMap(&m_cBaseMap);
    m_cBaseMap.RestoreDC(saved);
    m_bBaseMapDirty = 0;
}

// The picture of the copy before is used again if nobody holds it any more: a full window is some megabytes.
void CTvoViewKernel::CopyBaseMap(CDC* mem, CDC*, CDC* src) {
    const CSurface* const from = src->Surface();
    mem->DeleteDC();
    if (!from) {
        mem->Attach(Surface(m_nClientWidth, m_nClientHeight, 1));
        return;
    }
    if (m_pScratch && m_pScratch.use_count() == 1 && m_pScratch->Width() == from->Width() &&
        m_pScratch->Height() == from->Height())
        *m_pScratch = *from;  // the density too
    else
        m_pScratch = std::make_shared<CSurface>(*from);
    mem->Attach(m_pScratch);
}

void CTvoViewKernel::BlitScreen(CDC* dst, CDC* src) {
    dst->BitBlt(0, 0, m_nClientWidth, m_nClientHeight, src, 0, 0, SRCCOPY);
    g_bSnapSymbolShown = 0;  // it stood in the picture that is gone
}

void CTvoViewKernel::OnPaint() {
    m_bBaseMapDirty = 1;
    CView::OnPaint();
}

void CTvoViewKernel::OnDraw(CDC* dc) {
    DrawCursor(dc);
    DrawRubberLine(dc);
    g_bSnapSymbolShown = 0;
}

void CTvoViewKernel::GetGouJianInViewPort(CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*>& map, CRect rect) {
    map.RemoveAll();
    if (!m_pDataBase) return;
    CFRect world = m_cCoor.DPtoFP(rect);
    m_pDataBase->GetInterRect(world, map);
}

void CTvoViewKernel::RefreshViewPort() { GetGouJianInViewPort(m_mapViewPort, GetClientRect()); }

void CTvoViewKernel::ReGenObject(CGouJianEx* pGouJian) {
    if (IsWindow()) {
        CClientDC dc(this);
        CRect place = m_cCoor.FPtoDP(pGouJian->GetFrect());
        place.NormalizeRect();
        CBrush background(g_cTvoProfile.m_crBackground);
        dc.FillRect(place, &background);
    }
    Invalidate();
}

// ---- over it ----------------------------------------------------------------------------------------------

void CTvoViewKernel::OverlapBaseMap(CDC* dc, unsigned mask) {
    if (mask & 2) DrawRubberLine(dc);
    if (mask & 1) DrawCursor(dc);
}

void CTvoViewKernel::DrawCursor(CDC* dc) {
    CFPoint at = EffectivePoint();
    const Drawing drawing(*dc, kWhite, R2_NOT);
    if (m_nWorkState == 0) DrawCrossCursor(at, dc);
    else if (m_pWork) m_pWork->DrawCursor(this, at, dc);
}

void CTvoViewKernel::DrawCrossCursor(CFPoint& at, CDC* dc) {
    const CPoint p = PixelOf(at);
    const CRect client = GetClientRect();
    dc->MoveTo(0, p.y);
    dc->LineTo(client.right, p.y);
    dc->MoveTo(p.x, 0);
    dc->LineTo(p.x, client.bottom);
    const int h = CURSOR_SIZE / 2;
    CGdiObject* const old = dc->SelectStockObject(NULL_BRUSH);
    dc->Rectangle(p.x - h, p.y - h, p.x + h, p.y + h);
    dc->SelectObject(old);
}

void CTvoViewKernel::DrawRubberLine(CDC* dc) {
    if (!m_pWork) return;
    const Drawing drawing(*dc, g_cTvoProfile.m_crRubber, R2_XORPEN);
    if (!m_pWork->IsSelectCommand()) {
        if (m_pWork->m_pRubberLine) m_pWork->m_pRubberLine->DrawRange(this, *dc, 0);
        return;
    }
    const CSelectCommand* const select = Selecting();  // null for a select command of a host's own
    CRubberLine* line = select && select->m_pOwner ? select->m_pOwner->m_pRubberLine : nullptr;
    if (!line) line = m_pWork->m_pRubberLine;
    if (line) m_pWork->m_bRubberDrawn = line->DrawRange(this, *dc, 0);
    // A command that waits for the selection can keep its own picture on the screen.
    COperStackItem top;
    if (PeekViewStack(top) && top.m_pWork) top.m_pWork->DrawBackgrndWhileSelecting(this, *dc);
}

void CTvoViewKernel::Draw_Axis(CDC* dc) {
    const CRect client = GetClientRect();
    int length = 30;
    if (dc->IsPrinting() && client.Width() > 0) length = length * dc->GetDeviceCaps(VERTRES) / client.Width();
    const CPoint origin(client.left + length, client.bottom - length);
    struct Axis {
        CFPoint end;
        const char* label;
        COLORREF color;
        int aside;
    };
    const float l = static_cast<float>(length);
    const Axis axes[] = {{{l, 0, 0}, "X", 0x00FF00, 0}, {{0, l, 0}, "Y", 0x00FF00, 2}, {{0, 0, l}, "Z", 0x0000FF, 0}};
    CPoint ends[3];
    {
        const Drawing drawing(*dc, kWhite, R2_XORPEN);
        for (std::size_t i = 0; i < std::size(axes); ++i) {
            float u = 0, v = 0;
            m_cCoor.TouYing3Dto2D(axes[i].end.x, axes[i].end.y, axes[i].end.z, m_cCoor.m_fAlpha, m_cCoor.m_fBeta, u, v);
            ends[i] = origin;
            ends[i].Offset(SaturatedInt(static_cast<double>(u)), SaturatedInt(-static_cast<double>(v)));
            dc->MoveTo(origin);
            dc->LineTo(ends[i]);
        }
    }
    CFont* const oldFont = dc->SelectObject(&m_cFont);
    const int oldMode = dc->SetBkMode(TRANSPARENT);
    const COLORREF oldColor = dc->GetTextColor();
    for (std::size_t i = 0; i < std::size(axes); ++i) {
        dc->SetTextColor(axes[i].color);
        dc->TextOut(ends[i].x + axes[i].aside, ends[i].y, axes[i].label);
    }
    dc->SetTextColor(oldColor);
    dc->SetBkMode(oldMode);
    dc->SelectObject(oldFont);
}

void CTvoViewKernel::ShowCursor(HCURSOR cursor) {
    if (Peer()) Peer()->Cursor(cursor);
}
