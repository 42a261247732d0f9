// CGridDataBase: plates in plates.
#include <algorithm>
#include <cmath>

#include "geometry/region_measures.h"
#include "net/grid_data_base.h"
#include "plates/mian_goujian.h"

namespace {

constexpr float kTol = 0.01f;

// A plate without a border has no place.
template <class Test>
bool EachVertex(const CFRegion& region, Test test) {
    return !region.IsEmpty() && std::all_of(region.begin(), region.end(), test);
}

bool StrictlyInside(const CMianGouJian& inner, const CMianGouJian& outer) {
    // The extent spares most candidates the exact test. Far out, floats are rounded.
    const CFRect& rect = outer.m_rect;
    const float farthest = std::max(
        {std::fabs(rect.m_fMinX), std::fabs(rect.m_fMinY), std::fabs(rect.m_fMaxX), std::fabs(rect.m_fMaxY)});
    return EachVertex(inner.m_region, [&](const CFShoot& v) {
        return rect.FpInFRect(v, 1.0f + 1e-6f * farthest) &&
               Point_Inside_Region(outer.m_region, v.x, v.y, kTol);
    });
}

}  // namespace

CMianGouJian* CGridDataBase::GetEmbracingPlate(CMianGouJian* plate, unsigned char type) {
    CArray<CGouJianEx*> candidates;
    GetGouJianArray(type == 0 ? plate->get_Gjlx() : type, &candidates);
    // The plate itself needs no exclusion: its vertices lie on its border. Of the candidates it is the last
    // one smaller than the first, not always the smallest: meant.
    constexpr float kSquareMetre = 1e6f;
    CMianGouJian* best = nullptr;
    float firstArea = 0;
    for (CGouJianEx* obj : candidates) {
        if (obj->QueryBasicType() != kBasicPlate) continue;
        auto* candidate = static_cast<CMianGouJian*>(obj);
        if (!StrictlyInside(*plate, *candidate)) continue;
        const float area = GetMianJi(candidate->m_region) / kSquareMetre;
        if (!best) firstArea = area;
        if (!best || firstArea > area) best = candidate;
    }
    return best;
}

int CGridDataBase::GetPlateInPlate(CMianGouJian* plate, CArray<CMianGouJian*>& out, CByteArray* types) {
    CByteArray wanted;
    wanted.Add(plate->get_Gjlx());
    if (types)
        for (const unsigned char type : *types) wanted.Add(type);
    for (const unsigned char type : wanted) {
        CArray<CGouJianEx*> candidates;
        GetGouJianArray(type, &candidates);
        for (CGouJianEx* obj : candidates) {
            if (obj == plate || obj->QueryBasicType() != kBasicPlate) continue;
            auto* candidate = static_cast<CMianGouJian*>(obj);
            if (StrictlyInside(*candidate, *plate)) out.Add(candidate);
        }
    }
    return out.GetSize();
}

int CGridDataBase::IsPlateInsidePlate(CMianGouJian* outer, CMianGouJian* inner) {
    return EachVertex(inner->m_region, [&](const CFShoot& v) {
        return Point_Bordering_Region(outer->m_region, v.x, v.y, kTol) ||
               Point_Inside_Region(outer->m_region, v.x, v.y, kTol);
    });
}
