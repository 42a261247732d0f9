// The fields of a model.
#include "fields/chang.h"
#include "fields/gj_chang.h"
#include "model/tvo_data_base.h"

CGjChang* CTvoDataBase::DrawChang(CChang* chang, int colorScheme, unsigned long tag, FIELD_DISPLAY display,
                                  float valueScale, int drawGrid, int drawValue, unsigned char status) {
    if (!chang) return nullptr;
    auto* obj = new CGjChang;  // owned by the container from AddGouJian on
    obj->m_pDataBase = this;
    obj->set_m_dwGouJianID(GetNextID(GJLX_CHANG));
    obj->set_m_dwGouJianNO(obj->get_m_dwGouJianID() & 0xFFFFFF);
    obj->set_m_byteStatus(status);
    obj->m_pChang = chang;
    obj->m_dwTag = static_cast<std::uint32_t>(tag & 0xFFFFFFFF);
    obj->m_nColorScheme = chang->m_nColorScheme = colorScheme;
    obj->m_bDrawGrid = drawGrid;
    obj->m_bDrawValue = drawValue;
    obj->m_fValueScale = chang->m_fValueScale = valueScale;
    obj->m_nDisplay = display;  // before AddGouJian, which fills the display list
    AddGouJian(obj);
    obj->DisplayChang(View(), display);
    return obj;
}

CGjChang* CTvoDataBase::GetChang(unsigned long tag) {
    // The first by identity: the order of a family's map says nothing.
    CGouJianEx* first = nullptr;
    m_mapFamily[GJLX_CHANG].ForEach([&](unsigned long, CGouJianEx* obj) {
        const bool wanted = obj->m_dwTag == static_cast<std::uint32_t>(tag & 0xFFFFFFFF);
        if (wanted && (!first || obj->m_dwGouJianID < first->m_dwGouJianID)) first = obj;
    });
    return dynamic_cast<CGjChang*>(first);
}
