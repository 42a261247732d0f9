// The caches of a net line, and its display list; net_line_object.cpp makes lines off the net.
#include "net/gj_net_line.h"

#include "geometry/angles.h"
#include "geometry/tolerance.h"
#include "model/draw_graph.h"
#include "model/profile.h"
#include "model/tvo_data_base.h"
#include "net/gj_net_node.h"
#include "net/net_draw_info.h"
#include "platform/canvas/gdi_types.h"
#include "platform/saturate.h"

namespace {

using tolerance::kFullTurnF;
using tolerance::kHalfTurnF;

constexpr float kArrowHalfSize = 60.0f;  // model units
constexpr char kPartLine = 'A', kPartArrow = 'B';

// Distance of an arc's centre from its chord, to the left of it, from half the chord and half the included
// angle in degrees (0 to 180). A flat angle is measured by the tangent, a steep one by sine over cosine.
float HeightOfCentre(float halfChord, float halfAngleDegrees) {
    const float v = 90.0f - halfAngleDegrees;  // between the chord and the line from its end to the centre
    const float t = v * kHalfTurnF / 180.0f;
    return v > -45.0f && v < 45.0f ? halfChord * std::tan(t) : halfChord / std::cos(t) * std::sin(t);
}

float Below360(float degrees) { return degrees >= 360.0f ? degrees - 360.0f : degrees; }

}  // namespace

// --- caches -----------------------------------------------------------------------------------------------

void CGjNetLine::OnCalcParameters() {
    if (m_bParamCalculated) return;
    __CalcStartEndPoint();
    __CalcCenterPoint();
    __CalcR();
    __CalcDirectionAngle();
    __CalcMidPoint();
    __CalcLength();
    __CalcTangentAngle();
    m_bParamCalculated = 1;
    __CalcShape();
}

void CGjNetLine::__CalcStartEndPoint() {
    m_fStartX = m_pStartNode->m_fX;
    m_fStartY = m_pStartNode->m_fY;
    m_fEndX = m_pEndNode->m_fX;
    m_fEndY = m_pEndNode->m_fY;
}

void CGjNetLine::__CalcCenterPoint() {
    if (!m_nArc) return;
    // Only a bulge that isn't positive gives a true arc; a positive one is taken as 0.
    const float halfAngle = std::clamp(-m_fBulge, 0.0f, 180.0f);
    const float halfChord = get_dist(m_fStartX, m_fStartY, m_fEndX, m_fEndY) / 2;
    m_fCenterX = halfChord;
    m_fCenterY = HeightOfCentre(halfChord, halfAngle);
    frame_to_model(get_line_angle(m_fStartX, m_fStartY, m_fEndX, m_fEndY), m_fStartX, m_fStartY, &m_fCenterX, &m_fCenterY);
}

void CGjNetLine::__CalcR() {
    if (m_nArc) m_fR = get_dist(m_fCenterX, m_fCenterY, m_fStartX, m_fStartY);
}

void CGjNetLine::__CalcDirectionAngle() {
    if (!m_nArc) {
        m_fStartDir = m_fEndDir = get_line_angle(m_fStartX, m_fStartY, m_fEndX, m_fEndY);
        return;
    }
    m_fStartDir = get_line_angle(m_fCenterX, m_fCenterY, m_fStartX, m_fStartY);
    m_fEndDir = get_line_angle(m_fCenterX, m_fCenterY, m_fEndX, m_fEndY);
    if (m_fStartDir > m_fEndDir) m_fEndDir += kFullTurnF;
}

void CGjNetLine::__CalcMidPoint() {
    if (m_nArc) {
        const float m = (m_fStartDir + m_fEndDir) / 2;
        m_fMidX = m_fCenterX + m_fR * std::cos(m);
        m_fMidY = m_fCenterY + m_fR * std::sin(m);
    } else {
        m_fMidX = (m_fStartX + m_fEndX) / 2;
        m_fMidY = (m_fStartY + m_fEndY) / 2;
    }
}

void CGjNetLine::__CalcLength() {
    m_fChordLength = get_dist(m_fStartX, m_fStartY, m_fEndX, m_fEndY);
    m_fLength = m_nArc ? (m_fEndDir - m_fStartDir) * m_fR : m_fChordLength;
}

// Along the line, away from each end. A result below 0 stays below 0.
void CGjNetLine::__CalcTangentAngle() {
    const float chord = m_nArc ? get_line_angle(m_fStartX, m_fStartY, m_fEndX, m_fEndY) : m_fStartDir;
    m_fStartTangent = Below360(chord * 180.0f / kHalfTurnF + m_fBulge);
    m_fEndTangent = Below360(get_line_angle(m_fEndX, m_fEndY, m_fStartX, m_fStartY) * 180.0f / kHalfTurnF - m_fBulge);
}

void CGjNetLine::__CalcShape() {
    if (m_nArc)
        m_cShape = CFShape(CFPoint(m_fCenterX, m_fCenterY, 0), m_fR, m_fStartDir, m_fEndDir - m_fStartDir);
    else
        m_cShape = CFShape(CFPoint(m_fStartX, m_fStartY, 0), m_fLength, m_fStartTangent * kHalfTurnF / 180.0f, 0);
}

// --- questions --------------------------------------------------------------------------------------------

int CGjNetLine::IsVertical() const { return std::fabs(static_cast<double>(m_pEndNode->m_fX - m_pStartNode->m_fX)) < 0.1; }
int CGjNetLine::IsHorizontal() const { return std::fabs(static_cast<double>(m_pEndNode->m_fY - m_pStartNode->m_fY)) < 0.1; }

CFShoot CGjNetLine::GetFShoot(int reverse) const {
    const CGjNetNode* from = reverse ? m_pEndNode : m_pStartNode;
    float c = 0;
    if (m_nArc) {
        c = m_fBulge * kHalfTurnF / 180.0f;
        if (reverse) c = -c;
    }
    return CFShoot(from->m_fX, from->m_fY, c);
}

CGjNetLine* CGjNetLine::Clone() {
    auto* copy = new CGjNetLine;  // the caller's
    CTvoDataBase* db = g_pCurrentDataBase;
    copy->m_pDataBase = db;
    copy->set_m_dwGouJianID(db ? db->GetNextID(GJLX_NET_LINE) : static_cast<unsigned long>(GJLX_NET_LINE) << 24);
    copy->set_m_byteStatus(GJ_STATUS_NORMAL);
    copy->set_m_dwGouJianNO(copy->get_m_dwGouJianID() & 0xFFFFFF);
    copy->m_pStartNode = m_pStartNode;
    copy->m_dwStartNO = m_dwStartNO;
    copy->m_dwStartID = m_dwStartID;
    copy->m_pEndNode = m_pEndNode;
    copy->m_dwEndNO = m_dwEndNO;
    copy->m_dwEndID = m_dwEndID;
    copy->m_fBulge = m_fBulge;
    copy->m_fMidX = m_fMidX;
    copy->m_fMidY = m_fMidY;
    copy->m_fCenterX = m_fCenterX;
    copy->m_fCenterY = m_fCenterY;
    copy->m_fStartDir = m_fStartDir;
    copy->m_fEndDir = m_fEndDir;
    copy->m_fR = m_fR;
    copy->m_fStartTangent = m_fStartTangent;
    copy->m_fEndTangent = m_fEndTangent;
    copy->m_fLength = m_fLength;
    copy->m_fStartX = m_fStartX;
    copy->m_fStartY = m_fStartY;
    copy->m_fEndX = m_fEndX;
    copy->m_fEndY = m_fEndY;
    copy->m_fChordLength = m_fChordLength;
    copy->m_nSpare = m_nSpare;
    copy->m_cShape = m_cShape;
    copy->m_bFullCircle = m_bFullCircle;
    return copy;
}

// --- display ----------------------------------------------------------------------------------------------

int CGjNetLine::DrawGraph(CDrawGraph* g) {
    if (m_nArc)
        g->Draw_Arc(m_fCenterX, m_fCenterY, m_fR, m_fStartDir * 180.0f / kHalfTurnF, m_fEndDir * 180.0f / kHalfTurnF, 1.0f,
                    kPartLine, 1, R2_COPYPEN);
    else
        g->Draw_Line(m_pStartNode->m_fX, m_pStartNode->m_fY, m_pEndNode->m_fX, m_pEndNode->m_fY, 1.0f, kPartLine, 1, R2_COPYPEN);
    if (g_cTvoProfile.m_bShowLineDirection) DrawDirection(g);
    return 1;
}

// A triangle a fifth of the way along the line. It gives no snap points.
void CGjNetLine::DrawDirection(CDrawGraph* g) const {
    CFPoint corners[3];
    float angle, x, y;
    if (m_nArc) {
        angle = m_fStartDir + (m_fEndDir - m_fStartDir) / 5;
        x = m_fCenterX + m_fR * std::cos(angle);
        y = m_fCenterY + m_fR * std::sin(angle);
        corners[0] = CFPoint(0, 0, 0);
        corners[1] = CFPoint(-kArrowHalfSize, kArrowHalfSize, 0);
        corners[2] = CFPoint(-kArrowHalfSize, -kArrowHalfSize, 0);
    } else {
        angle = m_fStartTangent * kHalfTurnF / 180.0f;
        x = m_pStartNode->m_fX;
        y = m_pStartNode->m_fY;
        const float q = static_cast<float>(SaturatedInt(m_fLength / 5));
        corners[0] = CFPoint(q, -1, 0);  // the tip lies 1 unit beside the line; that is how the arrow is drawn
        corners[1] = CFPoint(q - kArrowHalfSize, -kArrowHalfSize, 0);
        corners[2] = CFPoint(q + kArrowHalfSize, -kArrowHalfSize, 0);
    }
    for (CFPoint& c : corners) frame_to_model(angle, x, y, &c.x, &c.y);
    for (int i = 0; i < 3; ++i) {
        const CFPoint &from = corners[i], &to = corners[(i + 1) % 3];
        g->Draw_Line(from.x, from.y, to.x, to.y, 1.0f, kPartArrow, 0, R2_COPYPEN);
    }
}

void CGjNetLine::GetDrawInfo(unsigned char mode, char kind, unsigned long& colour, int& width) {
    const int normal = kind == kPartLine ? g_cTvoProfile.m_nLineColor : g_cTvoProfile.m_nLineColorOther;
    NetDrawInfo(mode, normal, g_cTvoProfile.m_nSelLineColor, colour, width);
}
