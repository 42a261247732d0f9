#include "fields/chang.h"

#include <algorithm>
#include <cmath>

#include "fields/cloud_raster.h"
#include "fields/field_locator.h"
#include "fields/field_mesh.h"
#include "fields/field_palette.h"
#include "fields/isoline_trace.h"
#include "geometry/fcoor.h"
#include "model/profile.h"
#include "platform/canvas/dc.h"

CChang::CChang() : m_pMesh(std::make_unique<CFieldMesh>(*this)) {}
CChang::~CChang() = default;

void CChang::Clear() {
    m_arrNode.RemoveAll();
    m_arrTri.RemoveAll();
    m_arrPolyline.RemoveAll();
    m_pLocator.reset();
    m_nRangeNodes = -1;
}

CFRect CChang::GetFRect() const {
    bool any = false;
    CFRect box;
    for (const CChangNode& node : m_arrNode) {
        if (!std::isfinite(node.m_fX) || !std::isfinite(node.m_fY)) continue;
        const CFRect place(node.m_fX, node.m_fY, node.m_fX, node.m_fY);
        box = any ? box.UnionFRect(place) : place;
        any = true;
    }
    return box;
}

int CChang::GetMinMaxZ(float& min, float& max) {
    bool any = false;
    min = max = 0;
    for (int i = 0; i < m_arrNode.GetSize(); ++i) {
        const float value = m_pMesh->Value(i);
        if (!std::isfinite(value)) continue;
        min = any ? std::min(min, value) : value;
        max = any ? std::max(max, value) : value;
        any = true;
    }
    m_fMin = min;
    m_fMax = max;
    m_nRangeNodes = m_arrNode.GetSize();
    m_nRangeValue = m_nValue;
    return any ? 1 : 0;
}

CFieldLocator& CChang::Locator() {
    if (!m_pLocator || !m_pLocator->Fits(*this)) CreateQuadTree();
    return *m_pLocator;
}

void CChang::CreateQuadTree() {
    m_pLocator.reset();  // before the new one takes its memory
    m_pMesh->Refresh();
    m_pLocator = std::make_unique<CFieldLocator>(*this, *m_pMesh);
}

float CChang::Get_Value(float x, float y) {
    float value = 0;
    return Locator().ValueAt(x, y, value) ? value : 0;
}

int CChang::PointInChang(float x, float y) {
    float value = 0;
    return Locator().ValueAt(x, y, value) ? 1 : 0;
}

int CChang::TraceOne(float z) {
    m_pMesh->Refresh();
    TraceIsoline(*this, *m_pMesh, z, m_arrPolyline);
    return m_arrPolyline.GetSize();
}

unsigned long CChang::GetIndexColor(float z) {
    float min, max;
    if (m_nRangeNodes != m_arrNode.GetSize() || m_nRangeValue != m_nValue) GetMinMaxZ(min, max);
    return FieldColor(m_nColorScheme, FieldColorStep(static_cast<double>(z), static_cast<double>(m_fMin),
                                                     static_cast<double>(m_fMax)));
}

namespace {

constexpr int kLongestSide = 2048;  // pixels of a cloud; the blit stretches it

/// The device's size of a box, shortened in proportion where the longer side is too long.
CSize CloudSize(const CRect& device) {
    const double wide = static_cast<double>(device.right) - device.left,
                 high = static_cast<double>(device.bottom) - device.top;
    const double share = std::min(1.0, kLongestSide / std::max({wide, high, 1.0}));
    return {SaturatedInt(std::round(wide * share), 1, kLongestSide),
            SaturatedInt(std::round(high * share), 1, kLongestSide)};
}

}  // namespace

void CChang::DrawBaseMap(CDC* ref, CDC* mem, CFCoor* coor, int& width, int& height, float factor) {
    const CFRect box = GetFRect();
    const CSize size = CloudSize(coor->FPtoDP(
        CFRect(box.m_fMinX * factor, box.m_fMinY * factor, box.m_fMaxX * factor, box.m_fMaxY * factor)));
    width = size.cx;
    height = size.cy;
    CBitmap bitmap;
    bitmap.CreateCompatibleBitmap(ref, width, height);
    mem->CreateCompatibleDC(ref);
    mem->Attach(bitmap.Surface());  // the context shares the picture and keeps it

    const COLORREF background = COLORREF{g_cTvoProfile.m_crBackground};
    float min, max;
    GetMinMaxZ(min, max);
    CloudColors colors{static_cast<double>(min), static_cast<double>(max), {}};
    for (int i = 0; i < kColorSteps; ++i)
        colors.pixel[static_cast<std::size_t>(i)] =
            PixelFromColor(ApartFrom(FieldColor(m_nColorScheme, i), background));
    bitmap.Surface()->Fill(PixelFromColor(background));
    m_pMesh->Refresh();
    PaintCloud(*this, *m_pMesh, box, colors, *bitmap.Surface());
}
