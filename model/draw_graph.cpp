#include "model/draw_graph.h"

#include <memory>
#include <optional>
#include <typeinfo>

#include "geometry/fregion.h"
#include "model/goujian.h"

CDrawGraph::~CDrawGraph() { RemoveAll(); }

void CDrawGraph::RemoveAll() {
    for (CGraphEntity* entity : m_aEntity) delete entity;
    m_aEntity.RemoveAll();
}

void CDrawGraph::Append(CGraphEntity* entity) {
    // Three pointers take the smallest block of the heap; growing one by one would take it twice.
    if (m_aEntity.IsEmpty()) m_aEntity.Reserve(3);
    m_aEntity.Add(entity);
}

// What the entity has stands before the call: for parts and states that an owner doesn't know it leaves both as they
// are.
void CDrawGraph::TakeDrawInfo(CGraphEntity& entity, CGouJianEx& owner) {
    unsigned long color = entity.m_dwColor;
    int lineType = entity.m_nLineType;
    owner.GetDrawInfo(owner.get_m_byteStatus(), entity.GetPart(), color, lineType);
    entity.SetColor(color);
    entity.SetLineType(lineType);
}

// --- painting and queries ---------------------------------------------------------------------------------

void CDrawGraph::Draw(CDC* dc, CFCoor* coor, CGouJianEx* owner) {
    for (int i = 0; i < m_aEntity.GetSize() && owner->IsVisable(); ++i) {
        CGraphEntity* const entity = m_aEntity[i];
        if (!owner->m_pDrawGraph || !owner->m_pDrawGraph->m_bFixed) TakeDrawInfo(*entity, *owner);
        entity->Draw(dc, coor);
    }
}

namespace {

constexpr int kUndecided = -1;
constexpr float kApart = 1.0f;  // model units, far beyond what any hit test forgives

/// The answer in either mode when the boxes alone give it. For lines, whose box is exact; net building asks
/// about these again and again, and most are far off or well inside. Not for a host's class derived from
/// them, which may have a test of its own.
int ByBoxes(CGraphEntity& entity, const CFRect& rect) {
    if (typeid(entity) != typeid(CGraph_Line)) return kUndecided;
    const CFRect box = entity.GetFrect();
    if (rect.FpInFRect(box.Nearest(), 0) && rect.FpInFRect(box.Furthest(), 0)) return 1;
    const CFRect query(rect.Nearest(), rect.Furthest());  // its outline is the same whatever corners it names
    const bool apart = box.m_fMinX > query.m_fMaxX + kApart || box.m_fMaxX < query.m_fMinX - kApart ||
                       box.m_fMinY > query.m_fMaxY + kApart || box.m_fMaxY < query.m_fMinY - kApart;
    return apart ? 0 : kUndecided;
}

}  // namespace

int CDrawGraph::HitTest(const CFRegion& region, int mode) {
    if (mode == 1) {
        for (CGraphEntity* entity : m_aEntity)
            if (!entity->HitTest(region, 1)) return 0;
        return 1;
    }
    for (CGraphEntity* entity : m_aEntity)
        if (entity->HitTest(region, 0)) return 1;
    return 0;
}

int CDrawGraph::HitTest(const CFRect& rect, int mode) {
    // What the region form answers, without making a region for a list of lines that the boxes decide.
    std::optional<CFRegion> region;
    for (CGraphEntity* entity : m_aEntity) {
        int hit = ByBoxes(*entity, rect);
        if (hit == kUndecided) {
            if (!region) region.emplace(rect);
            hit = entity->HitTest(*region, mode == 1 ? 1 : 0);
        }
        if (hit == 0 && mode == 1) return 0;
        if (hit != 0 && mode != 1) return 1;
    }
    return mode == 1;
}

CFRect CDrawGraph::GetFrect() {
    if (m_aEntity.IsEmpty()) return {};
    CFRect extent = m_aEntity[0]->GetFrect();
    for (int i = 1; i < m_aEntity.GetSize(); ++i) extent = extent | m_aEntity[i]->GetFrect();
    return extent;
}

void CDrawGraph::QueryAbsSnapPoint(unsigned int mode, CArray<CFPoint>& points, CArray<int>& kinds) {
    for (CGraphEntity* entity : m_aEntity)
        if (entity->CanSnap()) entity->QueryAbsSnapPoint(mode, points, kinds);
}

// --- filling ----------------------------------------------------------------------------------------------

namespace {

template <class Entity>
Entity* AppendTo(CDrawGraph& graph, std::unique_ptr<Entity> made, char part, int snap, int rop) {
    made->SetPart(part);
    made->SetSnap(snap);
    made->SetRop2(rop);
    graph.Append(made.get());
    return made.release();  // the graph owns it now
}

constexpr int kCopyPen = 13;  // R2_COPYPEN

}  // namespace

CGraph_Point* CDrawGraph::Draw_Point(float x, float y, char part, int snap, int rop) {
    return AppendTo(*this, std::make_unique<CGraph_Point>(x, y), part, snap, rop);
}

CGraph_Line* CDrawGraph::Draw_Line(float x1, float y1, float x2, float y2, float width, char part, int snap,
                                   int rop) {
    return AppendTo(*this, std::make_unique<CGraph_Line>(x1, y1, x2, y2, width), part, snap, rop);
}

void CDrawGraph::Move_To(float x, float y) {
    m_fPenX = x;
    m_fPenY = y;
}

CGraph_Line* CDrawGraph::Line_To(float x, float y, float width, char part, int snap, int rop) {
    return Draw_Line(m_fPenX, m_fPenY, x, y, width, part, snap, rop);
}

CGraph_Arc* CDrawGraph::Draw_Arc(float x, float y, float r, float start, float end, float width, char part, int snap,
                                 int rop) {
    return AppendTo(*this, std::make_unique<CGraph_Arc>(x, y, r, start, end, width), part, snap, rop);
}

CGraph_Circle* CDrawGraph::Draw_Circle(float x, float y, float r, float width, char part, int snap, int rop) {
    return AppendTo(*this, std::make_unique<CGraph_Circle>(x, y, r, width), part, snap, rop);
}

CGraph_CircleRgn* CDrawGraph::Draw_CircleRgn(float x, float y, float r, char part, int snap, int rop) {
    return AppendTo(*this, std::make_unique<CGraph_CircleRgn>(x, y, r), part, snap, rop);
}

CGraph_PolyRgn* CDrawGraph::Draw_PolyLineRgn(const CArray<CFPoint, CFPoint>& points, char part, int snap, int rop) {
    return AppendTo(*this, std::make_unique<CGraph_PolyRgn>(points), part, snap, rop);
}

CGraph_Text* CDrawGraph::Draw_Text(float x, float y, float height, float angle, const char* text, char part) {
    return AppendTo(*this, std::make_unique<CGraph_Text>(x, y, height, angle, text), part, 0, kCopyPen);
}

CGraph_Locator* CDrawGraph::Set_Locator(CFRect rect) {
    return AppendTo(*this, std::make_unique<CGraph_Locator>(rect), '0', 0, kCopyPen);
}
