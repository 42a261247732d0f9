#include "shell/switch_container.h"

#include "net/grid_data_base.h"
#include "shell/tvo_frame_base.h"
#include "view/tvo_view_mgr.h"

void SwitchContainer(CGridDataBase* db, int withView) {
    g_pCurrentDataBase = g_pGridDataBase = db;
    if (!db || !withView || !db->m_pFrame) return;
    g_pFrame = db->m_pFrame;
    CTvoViewMgr* view = g_pCurrentView = db->m_pFrame->GetDtView();
    if (!view) return;
    view->m_pDataBase = db;
    view->m_pSelectedList->RemoveAll();
    view->m_mapViewPort.RemoveAll();
    CList<CGouJianEx*, CGouJianEx*> all;
    db->GetGouJianListAll(all);
    for (POSITION p = all.GetHeadPosition(); p;) db->EmbraceNewGouJian(all.GetNext(p));
    view->m_bBaseMapDirty = 1;
    view->Invalidate();
}
