// CTvoViewMgr: what the view shows.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "fields/backgrnd.h"
#include "model/profile.h"
#include "model/tvo_data_base.h"
#include "platform/number_text.h"
#include "platform/window_system.h"
#include "shell/tvo_frame_base.h"
#include "view/tvo_view_mgr.h"

const float g_qeTvoScaleMin = 0.001f;
const float g_qeTvoScaleMax = 10.0f;

namespace {

constexpr double kSmallestSide = 1e-7;  // of a rectangle that can be shown, model units
constexpr std::uint16_t kMostViews = 10;

const char* const kViewNames[] = {"Coor.X", "Coor.Y", "Coor.Z", "Coor.Scale", "Coor.ReverseY", "Coor.Alpha", "Coor.Beta"};

bool IsTooSmall(const CRect& client) { return client.Width() < 2 || client.Height() < 2; }

/// What a view shows, without the size of its window.
void CopyShow(CFCoor& to, const CFCoor& from) {
    to.Init(from.GetOrigin(), from.GetScale(), from.IsReverseY());
    to.m_cOrigin.z = from.m_cOrigin.z;
    to.m_fAlpha = from.m_fAlpha;
    to.m_fBeta = from.m_fBeta;
}

}  // namespace

// ---- saved views ------------------------------------------------------------------------------------------

void CTvoViewMgr::_Fun_SaveCoor() {
    if (m_nCoorHistory >= kMostViews) {
        std::move(m_aCoorHistory + 1, m_aCoorHistory + kMostViews, m_aCoorHistory);
        m_nCoorHistory = kMostViews - 1;
    }
    m_aCoorHistory[m_nCoorHistory++] = m_cCoor;
}

void CTvoViewMgr::_Fun_ShowPre() {
    if (m_nCoorHistory == 0) return;
    m_cCoor = m_aCoorHistory[--m_nCoorHistory];
    m_cCoor.m_rcClient = GetClientRect();  // the window may have another size since
    RefreshViewPort();
    m_bBaseMapDirty = 1;
    Invalidate();
}

void CTvoViewMgr::_Fun_GetCurrShow(CFCoor* coor) { CopyShow(*coor, m_cCoor); }

// The next paint rebuilds the base map anyway.
void CTvoViewMgr::_Fun_SetCurrShow(CFCoor* coor) {
    if (!IsUsableView(coor->GetScale(), coor->GetOrigin())) return;
    CopyShow(m_cCoor, *coor);
    RefreshViewPort();
    Invalidate();
}

void CTvoViewMgr::SaveCurrentViewState() {
    m_cSavedCursor = m_cCursor;
    m_cSavedOffset = m_cCursorOffset;
    m_cSavedCoor = m_cCoor;
    ++m_nStateToggle;
}

void CTvoViewMgr::RestoreCurrentViewState() {
    if (m_nStateToggle % 2 == 0) return;
    ++m_nStateToggle;
    m_cCursor = m_cSavedCursor;
    m_cCursorOffset = m_cSavedOffset;
    m_cCoor = m_cSavedCoor;
    const CFRect world = m_cCoor.DPtoFP(GetClientRect());
    _Fun_ShowRect({world.m_fMinX, world.m_fMinY, 0}, {world.m_fMaxX, world.m_fMaxY, 0}, 1, 0);
}

// ---- moving and zooming -----------------------------------------------------------------------------------

/// (x, y) in the middle of the window at a scale.
void CTvoViewMgr::CenterOn(double x, double y, float scale) {
    const CRect client = GetClientRect();
    const double s = static_cast<double>(scale);
    m_cCoor.SetScale(scale);
    m_cCoor.SetOrigin({static_cast<float>(x - (client.left + client.right) / s / 2),
                       static_cast<float>(y + (client.top + client.bottom) / s / 2), 0});
}

void CTvoViewMgr::_Fun_ShowRect(const CFPoint& a, const CFPoint& b, int bRedraw, int bAllObjects) {
    if (a.x == b.x || a.y == b.y) return;
    const double left = std::min(a.x, b.x), right = std::max(a.x, b.x);
    const double bottom = std::min(a.y, b.y), top = std::max(a.y, b.y);
    const double width = right - left, height = top - bottom;
    const CRect client = GetClientRect();
    if (!(width >= kSmallestSide && height >= kSmallestSide) || IsTooSmall(client)) return;
    const double clientWidth = client.Width(), clientHeight = client.Height();
    const double scale = width / height > clientWidth / clientHeight ? clientWidth / width : clientHeight / height;
    if (!IsUsableView(static_cast<float>(scale), a) || !IsUsableView(static_cast<float>(scale), b)) return;
    _Fun_SaveCoor();
    const CPoint cursor = PixelOf(m_cCursor);
    CenterOn((left + right) / 2, (bottom + top) / 2, static_cast<float>(scale));
    if (bAllObjects && m_pDataBase) m_pDataBase->GetGouJianListAll(m_mapViewPort, 1);
    else RefreshViewPort();
    KeepCursorAt(cursor);
    m_bBaseMapDirty = 1;
    if (bRedraw == 1) Invalidate();
}

// The view is saved before anything is looked at, unlike above.
void CTvoViewMgr::_Fun_CenterAt(float x, float y) {
    if (!IsUsableView(m_cCoor.GetScale(), {x, y, 0})) return;
    _Fun_SaveCoor();
    const CRect client = GetClientRect();
    const CFRect world = m_cCoor.DPtoFP(client);
    if (!(static_cast<double>(world.m_fMaxX) - world.m_fMinX >= kSmallestSide &&
          static_cast<double>(world.m_fMaxY) - world.m_fMinY >= kSmallestSide) ||
        IsTooSmall(client))
        return;
    const CPoint cursor = PixelOf(m_cCursor);
    CenterOn(static_cast<double>(x), static_cast<double>(y), m_cCoor.GetScale());
    RefreshViewPort();
    KeepCursorAt(cursor);
    m_bBaseMapDirty = 1;
    Invalidate();
}

int CTvoViewMgr::GetMaxRect(CFPoint& low, CFPoint& high) {
    CFRect box(0, 0, 20000, 20000);
    if (m_pDataBase) {
        box = m_pDataBase->GetFrect();
        if (m_bShowGrid) box = box | m_pDataBase->GetBackgrnd().GetFrect(&m_cCoor);
    }
    low = CFPoint(box.m_fMinX, box.m_fMinY, 0);
    high = CFPoint(box.m_fMaxX, box.m_fMaxY, 0);
    return 1;
}

void CTvoViewMgr::_Fun_ShowAll() {
    CFPoint low, high;
    if (GetMaxRect(low, high)) _Fun_ShowRect(low, high, 1, 1);
}

void CTvoViewMgr::_Svr_Extends() {
    if (!m_pDataBase) return;
    const CFRect box = m_pDataBase->GetFrect();
    _Fun_ShowRect({box.m_fMinX, box.m_fMinY, 0}, {box.m_fMaxX, box.m_fMaxY, 0}, 1, 1);
}

void CTvoViewMgr::_Fun_ShowMove(const CFPoint& from, const CFPoint& to) {
    const CFPoint origin = m_cCoor.GetOrigin();
    const CFPoint moved(origin.x + (from.x - to.x), origin.y + (from.y - to.y), 0);
    if (!IsUsableView(m_cCoor.GetScale(), moved)) return;
    _Fun_SaveCoor();
    m_cCoor.SetOrigin(moved);
    RefreshViewPort();
    m_bBaseMapDirty = 1;
    Invalidate();
}

void CTvoViewMgr::PanBy(const CFPoint& from, const CFPoint& to) {
    const CFPoint origin = m_cCoor.GetOrigin();
    const CFPoint moved(origin.x + (from.x - to.x), origin.y + (from.y - to.y), 0);
    if (!IsUsableView(m_cCoor.GetScale(), moved)) return;
    const CPoint cursor = PixelOf(m_cCursor);
    m_cCoor.SetOrigin(moved);
    KeepCursorAt(cursor);
}

void CTvoViewMgr::Zoom(bool in) {
    const float scale = in ? m_cCoor.GetScale() * 1.2f : m_cCoor.GetScale() / 1.2f;
    if (scale < g_qeTvoScaleMin) return History("已到缩小极限！");
    if (scale > g_qeTvoScaleMax) return History("已到放大极限！");
    _Fun_SaveCoor();
    const CRect client = GetClientRect();
    const double before = static_cast<double>(m_cCoor.GetScale()), now = static_cast<double>(scale);
    const CFPoint origin = m_cCoor.GetOrigin();
    const int down = m_cCoor.IsReverseY() ? -1 : 1;  // the sense of y from the origin into the window
    m_cCoor.SetScale(scale);
    m_cCoor.SetOrigin({static_cast<float>(origin.x + (client.Width() / before - client.Width() / now) / 2),
                       static_cast<float>(origin.y + down * (client.Height() / before - client.Height() / now) / 2), 0});
    RefreshViewPort();
    m_bBaseMapDirty = 1;
    Invalidate();
}

void CTvoViewMgr::_Svr_ShowZoomIn() { Zoom(true); }
void CTvoViewMgr::_Svr_ShowZoomOut() { Zoom(false); }

// ---- the last view, kept between sessions -----------------------------------------------------------------

void CTvoViewMgr::WriteLastCoordinateToReg() {
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system || g_cTvoProfile.m_strRegPath.IsEmpty() || g_cTvoProfile.m_strRegSubKey.IsEmpty()) return;
    const std::string path = (g_cTvoProfile.m_strRegPath + g_cTvoProfile.m_strRegSubKey).GetString();
    const CFPoint origin = m_cCoor.GetOrigin();
    const float values[] = {origin.x, origin.y, origin.z, m_cCoor.GetScale(), static_cast<float>(m_cCoor.IsReverseY()),
                            m_cCoor.m_fAlpha, m_cCoor.m_fBeta};
    for (std::size_t i = 0; i < std::size(values); ++i)
        system->WriteSetting(path, kViewNames[i], FixedReal(static_cast<double>(values[i]), 7));
}

// All seven or none: a view of which a part is missing or no number shows nothing.
void CTvoViewMgr::ReadLastCoordinateFromReg() {
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system || g_cTvoProfile.m_strRegPath.IsEmpty() || g_cTvoProfile.m_strRegSubKey.IsEmpty()) return;
    const std::string path = (g_cTvoProfile.m_strRegPath + g_cTvoProfile.m_strRegSubKey).GetString();
    float values[std::size(kViewNames)];
    for (std::size_t i = 0; i < std::size(values); ++i) {
        const auto text = system->ReadSetting(path, kViewNames[i]);
        if (!text || text->find_first_of("0123456789") == std::string::npos) return;
        values[i] = static_cast<float>(LeadingReal(*text));
        if (!std::isfinite(values[i])) return;
    }
    const CFPoint origin(values[0], values[1], values[2]);
    if (!IsUsableView(values[3], origin)) return;
    m_cCoor.Init(origin, values[3], values[4] != 0);
    m_cCoor.m_cOrigin.z = values[2];
    m_cCoor.m_fAlpha = values[5];
    m_cCoor.m_fBeta = values[6];
    _Fun_ShowMove(origin, origin);
}
