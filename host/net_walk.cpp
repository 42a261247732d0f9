#include "host/net_walk.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/tvo_load.h"
#include "net/gj_net_line.h"
#include "net/gj_net_node.h"
#include "net/grid_data_base.h"
#include "plates/mian_goujian.h"
#include "plates/wei_ban.h"

namespace {

template <class Component>
std::vector<Component*> ByIdentity(CGridDataBase& db, const CArray<unsigned char>& types) {
    std::vector<Component*> all;
    for (const unsigned char type : types) {
        CArray<CGouJianEx*> family;
        db.GetGouJianArray(type, &family);
        for (CGouJianEx* component : family) all.push_back(static_cast<Component*>(component));
    }
    std::sort(all.begin(), all.end(),
              [](const auto* a, const auto* b) { return a->m_dwGouJianID < b->m_dwGouJianID; });
    return all;
}

template <class Component>
std::vector<Component*> ByIdentity(CGridDataBase& db, unsigned char type) {
    CArray<unsigned char> types;
    types.Add(type);
    return ByIdentity<Component>(db, types);
}

void AddLine(Extent& extent, const CGjNetLine& line) {
    extent.Add(line.m_fStartX, line.m_fStartY);
    extent.Add(line.m_fEndX, line.m_fEndY);
    if (line.m_nArc != 1 || !std::isfinite(line.m_fStartDir) || !std::isfinite(line.m_fEndDir)) return;
    const double quarter = std::numbers::pi / 2;
    // Directions run from 0 to below 4 pi, so that at most eight axis points can be covered.
    for (int k = static_cast<int>(std::ceil(line.m_fStartDir / quarter)); k <= 8 && k * quarter <= line.m_fEndDir; ++k)
        extent.Add(line.m_fCenterX + line.m_fR * std::cos(k * quarter),
                   line.m_fCenterY + line.m_fR * std::sin(k * quarter));
}

}  // namespace

std::vector<CGjNetNode*> NetNodes(CGridDataBase& db) { return ByIdentity<CGjNetNode>(db, db.m_aNetNodeTypes); }
std::vector<CGjNetLine*> NetLines(CGridDataBase& db) { return ByIdentity<CGjNetLine>(db, db.m_aNetLineTypes); }
std::vector<CMianGouJian*> NetPlates(CGridDataBase& db) { return ByIdentity<CMianGouJian>(db, db.QueryMainGouJianType()); }
std::vector<CTvoLoad*> AllLoads(CGridDataBase& db) { return ByIdentity<CTvoLoad>(db, kTvoLoadType); }

std::vector<CMianGouJian*> AllPlates(CGridDataBase& db) {
    CArray<unsigned char> types;
    for (int type = 0; type < kTypeCount; ++type) {
        const auto& family = db.m_mapFamily[type];
        if (POSITION first = family.GetStartPosition()) {
            unsigned long id = 0;
            CGouJianEx* component = nullptr;
            family.GetNextAssoc(first, id, component);
            if (component->QueryBasicType() == kBasicPlate) types.Add(static_cast<unsigned char>(type));
        }
    }
    return ByIdentity<CMianGouJian>(db, types);
}

std::vector<CGjNetLine*> DanglingLines(CGridDataBase& db) {
    CWeiBan walker;
    walker.SetData(&db, nullptr);
    walker.PrepareData();
    std::vector<CGjNetLine*> lines = NetLines(db);
    std::erase_if(lines, [&](CGjNetLine* line) { return walker.IsCi(line) == 0; });
    return lines;
}

double PlateArea(CGridDataBase& db) {
    double area = 0;
    for (const CMianGouJian* plate : NetPlates(db)) area += plate->GetArea();
    return area;
}

void Extent::Add(double x, double y) {
    if (!std::isfinite(x) || !std::isfinite(y)) return;
    if (IsEmpty()) {
        *this = {x, y, x, y};
        return;
    }
    minX = std::min(minX, x);
    minY = std::min(minY, y);
    maxX = std::max(maxX, x);
    maxY = std::max(maxY, y);
}

void Extent::Grow(double margin) {
    minX -= margin;
    minY -= margin;
    maxX += margin;
    maxY += margin;
}

Extent NetExtent(CGridDataBase& db) { return ExtentOf(NetNodes(db), NetLines(db)); }

Extent ExtentOf(const std::vector<CGjNetNode*>& nodes, const std::vector<CGjNetLine*>& lines) {
    Extent extent;
    for (const CGjNetNode* node : nodes) extent.Add(node->m_fX, node->m_fY);
    for (const CGjNetLine* line : lines) AddLine(extent, *line);
    return extent;
}
