#include "host/editor/plate_pick.h"

#include <algorithm>

#include "host/host_data_base.h"
#include "plates/mian_goujian.h"
#include "view/tvo_view_kernel.h"

CMianGouJian* PlateAt(CTvoHostDataBase& db, const CFPoint& at) {
    CFRect place(at.x, at.y, at.x, at.y);
    CArray<CGouJianEx*, CGouJianEx*> near;
    db.GetInterRect(place, near);
    CMianGouJian* smallest = nullptr;
    for (CGouJianEx* obj : near) {
        if (obj->get_Gjlx() != db.QueryMainGouJianType() || obj->QueryBasicType() != kBasicPlate ||
            !db.IsVisible(obj))
            continue;
        auto* const plate = static_cast<CMianGouJian*>(obj);
        if (plate->m_region.InRegion(at) && (!smallest || plate->m_fArea < smallest->m_fArea))
            smallest = plate;
    }
    return smallest;
}

bool ReadPlace(const char* text, CFPoint& at) {
    float values[2] = {};
    int polar = 0, relative = 0;
    if (!ParseCoordString(CString(text), values, &polar, &relative) || polar || relative) return false;
    at = CFPoint(values[0], values[1], 0);
    return true;
}

PlatePickCommand::PlatePickCommand(const char* name, const char* prompt, EndFunction end) : m_end(end) {
    m_strName = name;
    m_strPrompt = prompt;
    m_nObjectHint = QS_TEXT;
    m_nMouseMask = MN_LDOWN;
}

void PlatePickCommand::Toggle(const CFPoint& at) {
    CMianGouJian* const plate = PlateAt(*static_cast<CTvoHostDataBase*>(m_pDataBase), at);
    if (!plate) return AppendPromptText("此处没有板");
    auto& picked = *m_pView->m_pSelectedList;
    if (POSITION stands = picked.Find(plate)) {
        picked.RemoveAt(stands);
        plate->set_m_byteStatus(GJ_STATUS_NORMAL);
    } else {
        picked.AddTail(plate);
        plate->set_m_byteStatus(GJ_STATUS_SELECTED);
    }
    AppendPromptText(CString("已选 ") + CString(std::to_string(picked.GetCount())) + " 块板");
    m_pView->m_bBaseMapDirty = 1;
    m_pView->Invalidate();
}

unsigned PlatePickCommand::OnGetObject(OBJECT_HINT hint, void* object, int byDefault) {
    const char* const text = hint == OH_TEXT ? static_cast<const char*>(object) : "";
    if (byDefault) {
        std::vector<CMianGouJian*> plates;
        for (POSITION p = m_pView->m_pSelectedList->GetHeadPosition(); p;)
            plates.push_back(static_cast<CMianGouJian*>(m_pView->m_pSelectedList->GetNext(p)));
        std::sort(plates.begin(), plates.end(), [](const auto* a, const auto* b) {
            return a->get_m_dwGouJianID() < b->get_m_dwGouJianID();
        });
        m_pView->ClearSelectedList();  // what goes is selected no more
        if (!plates.empty()) m_end(*static_cast<CTvoHostDataBase*>(m_pDataBase), plates, *this);
        return QS_FINISH;
    }
    CFPoint at;
    if (ReadPlace(text, at)) Toggle(at);
    else if (*text) AppendPromptText(CString("*") + text + ": 未知命令参数*");
    return QS_TEXT;
}

unsigned PlatePickCommand::OnMouseNotify(unsigned, unsigned, CFPoint point) {
    Toggle(point);
    return DTW_NONE;
}

unsigned PlatePickCommand::OnQueryState() {
    SetPromptText(m_strPrompt);
    return QS_TEXT;
}
