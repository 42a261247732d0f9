#include "host/editor/edit_view.h"

#include "shell/tvo_frame_base.h"
#include "view/select_command.h"

void CEditView::OnLButtonDown(UINT keys, CPoint p) {
    if (m_bKbdPointAdded || !PickAtCursor()) CTvoViewMgr::OnLButtonDown(keys, p);
}

// A command that selects through its owner has its clicks tested already.
bool CEditView::PickAtCursor() {
    auto* const single = static_cast<CSingleSelect*>(m_pSelectCommand[0]);
    if (m_nWorkState != 1 || !m_pWork || m_pWork != single || single->m_pOwner) return false;
    CFRect box = single->PickBox(EffectivePoint());
    single->Init();
    if (!HitTest(box, m_pSelectedList, 0, 1, single->m_lstAdded, single->m_lstRemoved)) return false;
    single->ModifyBaseMap();
    ShowCopy(7);
    if (m_pFrame) m_pFrame->AppendPromptText(single->m_lstAdded.IsEmpty() ? "1个对象退出选择" : "1个对象被选中");
    return true;
}
