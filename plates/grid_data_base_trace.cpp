// CGridDataBase: from a finished walk to a plate, and the walk of the whole net.
#include <algorithm>

#include "net/grid_data_base.h"
#include "plates/mian_goujian.h"
#include "plates/wei_ban.h"
#include "shell/tvo_frame_base.h"

namespace {

constexpr float kSameSide = 0.5f;  // degrees

}  // namespace

// The walk may have begun in the middle of a side.
void CGridDataBase::AdjustBanBianOrder(CArray<CGjNetLine*>& lines, CArray<int>& flags, float tolerance) {
    int k = 0;
    for (int i = lines.GetSize() - 1; i > 0; --i, ++k)
        if (!IsSimilarNetLine(lines[i + 1 < lines.GetSize() ? i + 1 : 0], lines[i], tolerance)) break;
    std::rotate(lines.begin(), lines.end() - k, lines.end());
    std::rotate(flags.begin(), flags.end() - k, flags.end());
}

CMianGouJian* CGridDataBase::CreateBanObject(int type, CArray<CGjNetLine*>& lines, CArray<int>& flags,
                                             int number) {
    AdjustBanBianOrder(lines, flags, kSameSide);
    CMianGouJian* plate = InstanceMianGouJian(type);
    if (!plate) return nullptr;
    const int n = lines.GetSize();
    CArray<int> begins;  // of the sides
    for (int i = 0; i < n; ++i)
        if (i == 0 || !IsSimilarNetLine(lines[i - 1], lines[i], kSameSide)) begins.Add(i);
    plate->m_nXingZhuangBian = begins.GetSize();
    plate->m_arrXingZhuangBian.SetSize(begins.GetSize());
    for (int s = 0; s < begins.GetSize(); ++s) {
        const int first = begins[s], last = s + 1 < begins.GetSize() ? begins[s + 1] : n;
        CGjXingZhuangBian& shape = plate->m_arrXingZhuangBian[s];
        shape.m_nIndex = s + 1;
        shape.m_nBian = last - first;
        shape.m_arrBian.SetSize(last - first);
        for (int i = first; i < last; ++i) {
            CJainTuBanBian& side = shape.m_arrBian[i - first];
            side.m_nIndex = i - first + 1;
            side.m_nLineNO = static_cast<int>(lines[i]->get_m_dwGouJianNO());
            side.m_nLineID = static_cast<int>(lines[i]->get_m_dwGouJianID());
            side.m_nDirection = flags[i];
            side.m_pNetLine = lines[i];
        }
    }
    plate->set_m_dwGouJianNO(static_cast<unsigned>(number));
    plate->CalcGeographicData();
    return plate;
}

void CGridDataBase::DoWeiBan() {
    const unsigned char main = QueryMainGouJianType();
    SortBianHao(main);
    CArray<CGouJianEx*> standing;
    GetGouJianArray(main, &standing);
    for (CGouJianEx* obj : standing) {
        if (obj->QueryBasicType() == kBasicPlate)
            DeleteGouJianDependentOnMianGouJian(static_cast<CMianGouJian*>(obj));
        DeleteGouJian(obj);
    }
    CWeiBan walker;
    walker.SetData(this, g_pFrame);
    CArray<unsigned char> types;
    QueryWeiBanType(types);
    for (const unsigned char type : types)
        m_mapFamily[type].ForEach([&](unsigned long, CGouJianEx* obj) {
            if (obj->QueryBasicType() == kBasicLine) walker.AddElement(static_cast<CGjNetLine*>(obj));
        });
    walker.DoWeiBan();
    for (CMianGouJian* plate : walker.m_arrBan) AddMianGouJian(plate);
    for (CMianGouJian* plate : walker.m_arrOuterBan) AddMianGouJian(plate);
}

// DoWeiBan asks what counts: while the two flags are set, the border lines of `in` and the plates of the
// type.
int CGridDataBase::CombineMianGouJian(CArray<CMianGouJian*>& in, CArray<CMianGouJian*>& out,
                                      unsigned char type, unsigned long tag) {
    m_bCombineMode = m_bCombineFilter = 1;
    m_byteCombineType = type;
    m_dwCombineTag = static_cast<std::uint32_t>(tag & 0xFFFFFFFF);
    m_mapCombineLine.RemoveAll();
    for (const CMianGouJian* plate : in)
        for (CGjNetLine* line : plate->m_arrBoundery) m_mapCombineLine.SetAt(line->get_m_dwGouJianID(), line);
    const int whole = m_bWeiBanWholeNet;
    m_bWeiBanWholeNet = 1;
    DoWeiBan();
    m_bWeiBanWholeNet = whole;
    CArray<CGouJianEx*> formed;
    GetGouJianArray(type, &formed);
    out.RemoveAll();
    for (CGouJianEx* obj : formed)
        if (obj->m_dwTag == m_dwCombineTag && obj->QueryBasicType() == kBasicPlate)
            out.Add(static_cast<CMianGouJian*>(obj));
    m_bCombineMode = m_bCombineFilter = 0;
    m_mapCombineLine.RemoveAll();  // the lines may go any time now
    return out.GetSize();
}
