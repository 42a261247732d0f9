#include "net/gj_net_node.h"

#include "geometry/fcoor.h"
#include "model/draw_graph.h"
#include "net/net_draw_info.h"
#include "platform/canvas/brush.h"
#include "platform/canvas/dc.h"

namespace {

constexpr float kBoundHalfSide = 10.0f;  // model units
constexpr int kHalfSizePixels = 3;
constexpr float kLargestHalfSize = 200.0f;  // model units: far out a node doesn't hide its surroundings

}  // namespace

CGjNetNode& CGjNetNode::operator=(const CGjNetNode& other) {
    CGouJianEx::operator=(other);
    m_fX = other.m_fX;
    m_fY = other.m_fY;
    m_fZ = other.m_fZ;
    m_rcBound = other.m_rcBound;
    return *this;
}

void CGjNetNode::OnCalcParameters() {
    m_rcBound = CFRect(m_fX - kBoundHalfSide, m_fY - kBoundHalfSide, m_fX + kBoundHalfSide, m_fY + kBoundHalfSide);
}

int CGjNetNode::DrawGraph(CDrawGraph* g) {
    g->Draw_Point(m_fX, m_fY, 'A', 1, R2_COPYPEN);
    return 1;
}

void CGjNetNode::GetDrawInfo(unsigned char mode, char /*kind*/, unsigned long& colour, int& width) {
    NetDrawInfo(mode, g_cTvoProfile.m_nNodeColor, g_cTvoProfile.m_nSelNodeColor, colour, width);
}

int CGjNetNode::Draw(CDC* dc, CFCoor* coor) {
    unsigned long colour = 0xFFFFFF;
    int width = 0;
    GetDrawInfo(m_byteStatus, 'A', colour, width);
    const float half = std::min(static_cast<float>(coor->DPtoFP(kHalfSizePixels)), kLargestHalfSize);
    const int h = coor->FPtoDP(static_cast<double>(half));
    const CPoint at = coor->FPtoDP(CFPoint(m_fX, m_fY, m_fZ));
    CBrush brush(colour);
    CBrush* before = dc->SelectObject(&brush);
    dc->Ellipse(at.x - h, at.y - h, at.x + h, at.y + h);
    dc->SelectObject(before);
    return 1;
}
