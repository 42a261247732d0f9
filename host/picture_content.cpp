#include "host/picture_content.h"

#include <algorithm>

#include "host/field_look.h"
#include "host/grid_marks.h"
#include "host/host_data_base.h"
#include "host/tvo_load.h"
#include "host/tvo_rider.h"
#include "model/draw_graph.h"
#include "net/gj_net_line.h"
#include "net/gj_net_node.h"
#include "plates/mian_goujian.h"

namespace {

constexpr int kPlaceOfLines = 100;

/// Where a type stands in the order of painting: what covers most comes first, texts come last.
int PaintingPlace(unsigned char type) {
    switch (type) {
        case GJLX_POLYGON_RGN:
            return 1;
        case GJLX_CIRCLE_RGN:
            return 2;
        case kTvoRiderType:
            return 3;
        case GJLX_TEXT:
            return 300;
        default:
            return 200;
    }
}

/// Physical components other than nodes, lines, plates and what hangs on these, and fields; in the order of
/// painting.
std::vector<CGouJianEx*> OtherComponents(CTvoHostDataBase& db) {
    CList<CGouJianEx*> all;
    db.GetGouJianListAll(all);
    std::vector<CGouJianEx*> others;
    for (POSITION at = all.GetHeadPosition(); at;) {
        CGouJianEx* component = all.GetNext(at);
        const int kind = component->QueryBasicType();
        const bool drawnElsewhere = kind == kBasicNode || kind == kBasicLine || kind == kBasicPlate ||
                                    component->get_Gjlx() == kTvoLoadType ||
                                    component->get_Gjlx() == GJLX_CHANG;
        if (!drawnElsewhere && component->IsPhysicalGouJian() == 1 && db.IsVisible(component))
            others.push_back(component);
    }
    std::sort(others.begin(), others.end(), [](const auto* a, const auto* b) {
        const int placeA = PaintingPlace(a->get_Gjlx()), placeB = PaintingPlace(b->get_Gjlx());
        return placeA != placeB ? placeA < placeB : a->m_dwGouJianID < b->m_dwGouJianID;
    });
    return others;
}

void AddBox(Extent& extent, const CFRect& box, float around = 0) {
    extent.Add(box.m_fMinX - around, box.m_fMinY - around);
    extent.Add(box.m_fMaxX + around, box.m_fMaxY + around);
}

float WidthOf(CGraphEntity& entity) {
    switch (entity.GetGraphType()) {
        case kGraphLine:
            return static_cast<CGraph_Line&>(entity).m_fWidth;
        case kGraphArc:
            return static_cast<CGraph_Arc&>(entity).m_fWidth;
        case kGraphCircle:
            return static_cast<CGraph_Circle&>(entity).m_fWidth;
        default:
            return 0;
    }
}

/// A component without a display list paints itself, and says where.
void AddComponent(Extent& extent, CGouJianEx& component) {
    const auto& entities = component.GetDrawGraph()->m_aEntity;
    if (entities.IsEmpty()) {
        if (component.m_bSelfDraw) AddBox(extent, component.GetFrect());
        return;
    }
    AddBox(extent, component.GetFrect());
    for (CGraphEntity* entity : entities)
        AddBox(extent, entity->GetFrect(), std::max(WidthOf(*entity), 0.0f) / 2);
}

}  // namespace

PictureContent ContentOfPicture(CTvoHostDataBase& db) {
    PictureContent content;
    content.lines = NetLines(db);
    content.nodes = NetNodes(db);
    std::erase_if(content.lines, [&](CGjNetLine* line) { return !db.IsVisible(line); });
    std::erase_if(content.nodes, [&](CGjNetNode* node) { return !db.IsVisible(node); });
    content.extent = ExtentOf(content.nodes, content.lines);
    for (CMianGouJian* plate : NetPlates(db))
        if (db.IsVisible(plate) && !plate->m_region.IsEmpty()) AddBox(content.extent, plate->GetFrect());
    content.fields = ShownFields(db);
    AddFields(content.extent, content.fields);
    for (CGouJianEx* other : OtherComponents(db)) {
        (PaintingPlace(other->get_Gjlx()) < kPlaceOfLines ? content.below : content.above).push_back(other);
        AddComponent(content.extent, *other);
    }
    if (content.extent.IsEmpty()) content.extent = GridExtent(db);
    return content;
}
