// Display numbers, and the text dump that shows them.
#include <cctype>
#include <cstdio>

#include "model/goujian.h"
#include "model/numbering.h"
#include "model/profile.h"
#include "model/tvo_data_base.h"

void CTvoDataBase::SortBianHao(unsigned char type) {
    m_arrBianHao[type].RemoveAll();
    m_bNumbersStale[type] = false;
    int counter = 1;
    CArray<CGouJianEx*, CGouJianEx*> array;
    GetGouJianArray(type, &array);
    SortBianHao(type, array, counter);
}

void CTvoDataBase::SortBianHao(unsigned char type, CArray<CGouJianEx*, CGouJianEx*>& array, int& counter) {
    m_cSortDir = static_cast<char>(std::toupper(static_cast<unsigned char>(m_cSortDir)));
    std::vector<SortPoint> points;
    points.reserve(static_cast<std::size_t>(array.GetSize()));
    for (CGouJianEx* obj : array) {
        const CFPoint p = obj->GetSortPoint();
        points.push_back({p.GetX(), p.GetY()});
    }
    const auto order = NumberingOrder(points, m_cSortDir == 'X', static_cast<float>(g_cTvoProfile.m_nNetTolerance));
    m_arrBianHao[type].Reserve(m_arrBianHao[type].GetSize() + array.GetSize());
    for (const std::int32_t i : order) {
        array[i]->set_m_dwGouJianNO(static_cast<unsigned int>(counter++));
        m_arrBianHao[type].Add(array[i]);
    }
    array.RemoveAll();
}

void CTvoDataBase::SortBianHaoAll() {
    if (m_bBianHaoDirty == 1 || !m_bBianHaoValid)
        for (int type = 1; type <= 254; ++type) SortBianHao(static_cast<unsigned char>(type));  // 255 has no numbers
    m_bBianHaoDirty = 0;
    m_bBianHaoValid = 1;
}

void CTvoDataBase::OutputData(CString path) {
    std::FILE* f = std::fopen(path, "w");
    if (!f) return;
    for (int type = 1; type <= 254; ++type) {
        std::fprintf(f, "TYPE:%d\n", type);
        CArray<CGouJianEx*> members;
        GetGouJianArray(static_cast<unsigned char>(type), &members);
        for (CGouJianEx* obj : members) {
            const CFRect r = obj->GetFrect();
            std::fprintf(f, "BH:%d, STATUS:%d (%.2f,%.2f)->(%.2f,%.2f)\n", static_cast<int>(obj->get_m_dwGouJianNO()),
                         obj->get_m_byteStatus(), static_cast<double>(r.m_fMinX / 1000), static_cast<double>(r.m_fMinY / 1000),
                         static_cast<double>(r.m_fMaxX / 1000), static_cast<double>(r.m_fMaxY / 1000));
        }
        std::fprintf(f, "=============================\n");
    }
    std::fclose(f);
}
