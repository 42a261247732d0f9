// Life, adding, deleting, undo and redo; tvo_data_base_query.cpp walks, _drawing.cpp paints and makes graphics
// components, _numbering.cpp numbers, _index.cpp keeps the spatial index.
#include "model/tvo_data_base.h"

#include "geometry/fcoor.h"
#include "model/draw_graph.h"
#include "model/goujian.h"
#include "model/grid_index_service_object.h"
#include "shell/tvo_frame_base.h"
#include "view/tvo_view_mgr.h"

CTvoDataBase* g_pCurrentDataBase = nullptr;

// --- life -------------------------------------------------------------------------------------------------

CTvoDataBase::CTvoDataBase() {
    m_onFree = [this](CGouJianEx* obj) { LetGo(obj); };
    m_cContain.SetFreeHook([this](CGouJianEx* obj) {
        if (m_onFree) m_onFree(obj);
    });
    Initialize();  // virtual calls end in this class here: a derived OnInitialize runs with a later Initialize
    m_pFrame = nullptr;
    m_bNoRefresh = 0;
    m_cSortDir = 'X';
    m_strDataName = "TvoBase";
}

CTvoDataBase::~CTvoDataBase() {
    CTvoDataBase::OnDestroyData();
    delete m_pIndex;
    m_pIndex = nullptr;
    DestroyData();
    if (CTvoViewMgr* view = Showing(); view && view->m_pDataBase == this) view->m_pDataBase = nullptr;
    if (g_pCurrentDataBase == this) g_pCurrentDataBase = nullptr;
}

void CTvoDataBase::Initialize() {
    m_cBackgrnd.m_nMode = 1;  // the background grid is points only
    m_bBianHaoDirty = m_bBianHaoValid = 0;
    g_pCurrentDataBase = this;
    if (m_pIndex) {  // called on a living model: its components wait for the new index
        delete m_pIndex;
        m_pIndex = new CGridIndexServiceObject;
        for (POSITION p = m_cContain.GetHeadPosition(); p;) {
            CGouJianEx* obj = m_cContain.GetNext(p);
            if (obj->IsPhysicalGouJian()) m_pIndex->AddToPool(obj);
        }
    } else {
        m_pIndex = new CGridIndexServiceObject;
    }
    m_bShowGraph = 1;
    OnInitialize();
    m_nCurCeng = -1;
}

void CTvoDataBase::DestroyData() {
    OnDestroyData();
    if (CTvoViewMgr* view = Showing()) {
        view->m_mapViewPort.RemoveAll();
        view->m_pSelectedList->RemoveAll();
    }
    m_cContain.DestroyData();
    m_cContain.m_mapNextXuHao.RemoveAll();
    m_cContain.UndoInit();
    for (auto& family : m_mapFamily) family.RemoveAll();
    for (auto& numbered : m_arrBianHao) numbered.RemoveAll();
    if (m_pIndex) m_pIndex->EmptyPool();
    delete m_pIndex;
    m_pIndex = nullptr;
}

CTvoViewMgr* CTvoDataBase::View() const { return m_pFrame ? m_pFrame->GetDtView() : nullptr; }

// The current view may show another model, whose components must not vanish from it.
CTvoViewMgr* CTvoDataBase::Showing() const {
    if (CTvoViewMgr* view = View()) return view;
    return g_pCurrentView && g_pCurrentView->m_pDataBase == this ? g_pCurrentView : nullptr;
}

// Whoever borrows components lets go of one here before it is freed.
void CTvoDataBase::LetGo(CGouJianEx* obj) {
    if (m_pIndex) m_pIndex->Remove(obj);
    const unsigned long id = obj->get_m_dwGouJianID();
    const auto drop = [&](CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*>& map) {
        CGouJianEx** held = map.Find(id);
        if (!held || *held != obj) return false;
        map.RemoveKey(id);
        return true;
    };
    // An array numbered before a deletion may still name the component, and one that names a live component does;
    // one numbered since the deletion doesn't.
    const unsigned char type = obj->get_Gjlx();
    if (drop(m_mapFamily[type]) || m_bNumbersStale[type]) m_arrBianHao[type].RemoveAll();
    if (CTvoViewMgr* view = Showing()) {
        drop(view->m_mapViewPort);
        view->ForgetComponent(obj);
    }
}

// --- add and delete ---------------------------------------------------------------------------------------

// The picture of the model is out of date. Nothing is painted here.
void CTvoDataBase::MarkViewStale() {
    CTvoViewMgr* view = View();
    if (!view) return;
    if (!m_bNoRefresh) view->Invalidate();
    view->m_bBaseMapDirty = 1;
}

int CTvoDataBase::AddGouJian(CGouJianEx* obj) {
    if (!obj || CObjectUndoContainEx::IsHeld(obj)) return 0;
    obj->m_nCeng = m_nCurCeng;
    m_cContain.AddGoujian(obj);
    OnAddGouJian(obj);
    const bool physical = obj->IsPhysicalGouJian() != 0;
    if (physical && m_bShowGraph) {
        if (!obj->m_bGraphBuilt && !obj->m_bSelfDraw) {
            obj->DrawGraph(obj->GetDrawGraph());
            obj->m_bGraphBuilt = 1;
        }
        EmbraceNewGouJian(obj);
    }
    m_bBianHaoDirty = 1;
    if (physical && m_bShowGraph) MarkViewStale();
    return 1;
}

int CTvoDataBase::DeleteGouJian(CGouJianEx* obj) {
    if (!m_cContain.Holds(obj)) return 0;
    const bool physical = obj->IsPhysicalGouJian() != 0;
    OnDelGouJian(obj);
    if (physical) RemoveGjFromViewPortObjects(obj);
    m_cContain.DeleteGouJian(obj);
    m_bBianHaoDirty = 1;
    if (physical && m_bShowGraph) MarkViewStale();
    return 1;
}

int CTvoDataBase::AddGouJian(CList<CGouJianEx*, CGouJianEx*>& objects) {
    for (POSITION p = objects.GetHeadPosition(); p;) AddGouJian(objects.GetNext(p));
    return 1;
}

int CTvoDataBase::DeleteGouJian(CList<CGouJianEx*, CGouJianEx*>& objects) {
    for (POSITION p = objects.GetHeadPosition(); p;) DeleteGouJian(objects.GetNext(p));
    return 1;
}

void CTvoDataBase::OnAddGouJian(CGouJianEx* obj) {
    m_mapFamily[obj->get_Gjlx()].SetAt(obj->get_m_dwGouJianID(), obj);
    if (!obj->m_bParamCalculated) {
        obj->OnCalcParameters();
        obj->m_bParamCalculated = 1;
    }
    if (!obj->IsPhysicalGouJian()) return;
    if (m_pFrame || m_pIndex->GetPoolCount() > 0) m_pIndex->AddToPool(obj);
    if (m_pFrame) return;
    if (m_pIndex->GetPoolCount() > 0)
        BringIndexUpToDate();
    else
        m_pIndex->AddNow(obj);
}

void CTvoDataBase::OnDelGouJian(CGouJianEx* obj) {
    obj->OnDestroy();
    m_bNumbersStale[obj->get_Gjlx()] = true;
    if (obj->IsPhysicalGouJian()) m_pIndex->Remove(obj);
    m_mapFamily[obj->get_Gjlx()].RemoveKey(obj->get_m_dwGouJianID());
}

// --- undo and redo ----------------------------------------------------------------------------------------

// Families, index and whatever derived classes keep follow what the log did to the store.
void CTvoDataBase::ReplayHooks(CList<CGouJianEx*, CGouJianEx*>& objects, CArray<CZLX, CZLX>& types) {
    int i = 0;
    for (POSITION p = objects.GetHeadPosition(); p; ++i) {
        CGouJianEx* obj = objects.GetNext(p);
        if (types[i] != CZLX_ADD)
            OnDelGouJian(obj);
        else
            OnAddGouJian(obj);
    }
}

void CTvoDataBase::FinishReplay(CList<CGouJianEx*, CGouJianEx*>& objects, CArray<CZLX, CZLX>& types, CWnd* wnd) {
    MergeViewPortObjects(objects, types);
    m_bBianHaoDirty = 1;
    if (!m_bNoRefresh && wnd) wnd->Invalidate();
}

void CTvoDataBase::Undo(CWnd* wnd, CFCoor* coor) {
    CList<CGouJianEx*, CGouJianEx*> objects;
    CArray<CZLX, CZLX> types;
    m_cContain.Undo(wnd, coor, objects, types);
    BeforeUndo(objects);
    ReplayHooks(objects, types);
    AfterUndo(objects);
    FinishReplay(objects, types, wnd);
}

void CTvoDataBase::Redo(CWnd* wnd, CFCoor* coor) {
    CList<CGouJianEx*, CGouJianEx*> objects;
    CArray<CZLX, CZLX> types;
    m_cContain.Redo(wnd, coor, objects, types);
    BeforeRedo(objects);
    ReplayHooks(objects, types);
    AfterRedo(objects);
    FinishReplay(objects, types, wnd);
}

void CTvoDataBase::Start() { m_cContain.Start(); }
void CTvoDataBase::UndoInit() { m_cContain.UndoInit(); }
int CTvoDataBase::CanUndo() { return m_cContain.CanUndo(); }
int CTvoDataBase::CanRedo() { return m_cContain.CanRedo(); }

// --- the view-port set ------------------------------------------------------------------------------------

void CTvoDataBase::EmbraceNewGouJian(CGouJianEx* obj) {
    CTvoViewMgr* view = View();
    if (view && obj->IsPhysicalGouJian()) view->m_mapViewPort.SetAt(obj->get_m_dwGouJianID(), obj);
}

void CTvoDataBase::RemoveGjFromViewPortObjects(CGouJianEx* obj) {
    if (CTvoViewMgr* view = View()) view->m_mapViewPort.RemoveKey(obj->get_m_dwGouJianID());
}

void CTvoDataBase::MergeViewPortObjects(CList<CGouJianEx*, CGouJianEx*>& objects, CArray<CZLX, CZLX>& types) {
    CTvoViewMgr* view = View();
    int i = 0;
    for (POSITION p = objects.GetHeadPosition(); p; ++i) {
        CGouJianEx* obj = objects.GetNext(p);
        if (!obj->IsPhysicalGouJian()) continue;
        if (types[i] != CZLX_ADD)
            RemoveGjFromViewPortObjects(obj);
        else if (view)  // not through EmbraceNewGouJian: the component isn't new
            view->m_mapViewPort.SetAt(obj->get_m_dwGouJianID(), obj);
    }
}
