// Life of a plate and questions about it; _geometry.cpp derives its figures, _file.cpp reads and writes it.
#include "plates/mian_goujian.h"

#include <algorithm>
#include <cmath>

#include "geometry/angles.h"
#include "geometry/tolerance.h"
#include "model/profile.h"
#include "net/gj_net_line.h"
#include "net/gj_net_node.h"
#include "net/grid_data_base.h"
#include "plates/side_line.h"
#include "platform/intersection.h"

namespace {

template <class T>
int CopyTo(CArray<T>& out, const CArray<T>& in) {
    out.Copy(in);
    return out.GetSize();
}

template <class T>
bool Has(const CArray<T>& array, T wanted) {
    return std::find(array.begin(), array.end(), wanted) != array.end();
}

}  // namespace

CMianGouJian::~CMianGouJian() { _FreeMemory(); }

void CMianGouJian::_FreeMemory() {
    delete[] m_pDomainEdge;
    m_pDomainEdge = nullptr;
    for (CGjNetLine* line : m_arrXingZhuangLine) delete line;
    m_arrXingZhuangLine.RemoveAll();
}

void CMianGouJian::CopyData(CMianGouJian* source) {
    if (!source || source == this) return;
    m_nXingZhuangBian = source->m_nXingZhuangBian;
    m_arrXingZhuangBian.Copy(source->m_arrXingZhuangBian);
    m_fArea = source->m_fArea;
    m_fCenterX = source->m_fCenterX;
    m_fCenterY = source->m_fCenterY;
    m_rect = source->m_rect;
    m_region = source->m_region;
    m_fZhouChang = source->m_fZhouChang;
    m_arrBoundery.Copy(source->m_arrBoundery);
    m_arrBounderyDir.Copy(source->m_arrBounderyDir);
    m_arrVertex.Copy(source->m_arrVertex);
    DropSideLines();
    CGridDataBase* db = side_line::OwnerFor(*this);
    m_arrXingZhuangLine.Reserve(source->m_arrXingZhuangLine.GetSize());
    m_arrXingZhuangDir.Reserve(source->m_arrXingZhuangLine.GetSize());
    for (int i = 0; i < source->m_arrXingZhuangLine.GetSize(); ++i) {
        m_arrXingZhuangLine.Add(side_line::Copy(db, *source->m_arrXingZhuangLine[i]));
        m_arrXingZhuangDir.Add(source->m_arrXingZhuangDir[i]);
    }
    BorderChanged();
}

void CMianGouJian::DropSideLines() {
    for (CGjNetLine* line : m_arrXingZhuangLine) delete line;
    m_arrXingZhuangLine.RemoveAll();
    m_arrXingZhuangDir.RemoveAll();
}

// One that stands in the store is entered under the lines that it now has.
void CMianGouJian::BorderChanged() {
    CGridDataBase* db = CObjectUndoContainEx::IsHeld(this) ? side_line::OwnerFor(*this) : nullptr;
    if (db) db->MainGouJianMaintain(this, 1);
}

void CMianGouJian::LetGoOfLines() {
    for (CGjXingZhuangBian& shape : m_arrXingZhuangBian)
        for (CJainTuBanBian& side : shape.m_arrBian) side.m_pNetLine = nullptr;
    m_arrBoundery.RemoveAll();
    m_arrBounderyDir.RemoveAll();
    m_arrVertex.RemoveAll();
    DropSideLines();
}

bool CMianGouJian::HasLostLines() const {
    for (const CGjXingZhuangBian& shape : m_arrXingZhuangBian)
        for (const CJainTuBanBian& side : shape.m_arrBian)
            if (!side.m_pNetLine) return true;
    return false;
}

// --- lists ------------------------------------------------------------------------------------------------

int CMianGouJian::GetBoundery(CArray<CGjNetLine*>& lines) const { return CopyTo(lines, m_arrBoundery); }
int CMianGouJian::GetBounderyByXingZhuangBian(CArray<CGjNetLine*>& lines) const {
    return CopyTo(lines, m_arrXingZhuangLine);
}
int CMianGouJian::GetVertex(CArray<CGjNetNode*>& nodes) const { return CopyTo(nodes, m_arrVertex); }

// --- questions --------------------------------------------------------------------------------------------

int CMianGouJian::BorderedBy(CGjNetLine* line) const { return Has(m_arrBoundery, line); }

int CMianGouJian::HasCommonBorder(CMianGouJian* other) const {
    return other && std::any_of(m_arrBoundery.begin(), m_arrBoundery.end(),
                                [&](CGjNetLine* line) { return Has(other->m_arrBoundery, line); });
}

int CMianGouJian::StrideNetNode(CGjNetLine* line) const {
    if (!line) return 0;
    const auto times = [this](CGjNetNode* node) {
        return std::count(m_arrVertex.begin(), m_arrVertex.end(), node);
    };
    return times(line->m_pStartNode) + times(line->m_pEndNode) >= 2;
}

int CMianGouJian::Contain(CMianGouJian* other) const {
    return other && m_region.Intersect(other->m_region, 0);
}

bool CMianGouJian::HasWholeBorder() const { return StateOfBorder() == BorderState::kWhole; }

CMianGouJian::BorderState CMianGouJian::StateOfBorder() const {
    const CGjNetNode* first = nullptr;  // where the walk began
    const CGjNetNode* at = nullptr;     // where it stands
    bool gap = false;
    for (const CGjXingZhuangBian& shape : m_arrXingZhuangBian) {
        if (shape.m_arrBian.IsEmpty()) gap = true;
        for (const CJainTuBanBian& side : shape.m_arrBian) {
            const CGjNetLine* line = side.m_pNetLine;
            if (!line || !line->m_pStartNode || !line->m_pEndNode) return BorderState::kLineMissing;
            const CGjNetNode* from = side.m_nDirection ? line->m_pStartNode : line->m_pEndNode;
            if (at && from != at) gap = true;
            if (!first) first = from;
            at = side.m_nDirection ? line->m_pEndNode : line->m_pStartNode;
        }
    }
    if (m_arrXingZhuangBian.IsEmpty()) return BorderState::kEmpty;
    return gap || at != first ? BorderState::kOpen : BorderState::kWhole;
}

// --- HasThisBorder ----------------------------------------------------------------------------------------

namespace {

bool StraightLiesOn(const CGjNetLine& line, const CGjNetLine& border, float tol) {
    const auto apart = [&](float x, float y) {
        return JH_GetMinDist_PointToLineSection(x, y, border.m_fStartX, border.m_fStartY, border.m_fEndX,
                                                border.m_fEndY);
    };
    return apart(line.m_fStartX, line.m_fStartY) < tol && apart(line.m_fEndX, line.m_fEndY) < tol;
}

bool SameCircle(const CGjNetLine& a, const CGjNetLine& b, float tol) {
    return get_dist(a.m_fCenterX, a.m_fCenterY, b.m_fCenterX, b.m_fCenterY) < tol &&
           std::fabs(a.m_fR - b.m_fR) < tol;
}

// The span of `inner` lies in that of `outer`, but for half a degree at either end.
bool SpanLiesIn(const CGjNetLine& inner, const CGjNetLine& outer) {
    constexpr float kSlack = 0.5f;
    const auto degrees = [](float radians) { return radians * 180.0f / tolerance::kHalfTurnF; };
    const float outerStart = degrees(outer.m_fStartDir), outerEnd = degrees(outer.m_fEndDir);
    const auto below = [](float a, float b) { return a < b || std::fabs(a - b) < kSlack; };
    const auto within = [&](float a) { return below(outerStart, a) && below(a, outerEnd); };
    return within(degrees(inner.m_fStartDir)) && within(degrees(inner.m_fEndDir));
}

// A straight line has to lie within the border line. For arcs it is the other way round: meant, callers count
// on it.
bool LiesAlong(const CGjNetLine& line, const CGjNetLine& border, float tol) {
    if ((line.m_nArc != 0) != (border.m_nArc != 0)) return false;
    if (!line.m_nArc) return StraightLiesOn(line, border, tol);
    return SameCircle(line, border, tol) && (border.m_bFullCircle || SpanLiesIn(border, line));
}

}  // namespace

int CMianGouJian::HasThisBorder(CGjNetLine* line) const {
    const float tol = static_cast<float>(g_cTvoProfile.m_nNetTolerance / 10);  // whole units
    return line && std::any_of(m_arrBoundery.begin(), m_arrBoundery.end(),
                               [&](const CGjNetLine* border) { return LiesAlong(*line, *border, tol); });
}
