#include "view/select_command.h"

#include <algorithm>
#include <utility>

#include "geometry/fregion.h"
#include "geometry/region_measures.h"
#include "model/draw_graph.h"
#include "model/goujian.h"
#include "model/profile.h"
#include "model/tvo_data_base.h"
#include "platform/canvas/client_dc.h"
#include "shell/prompt_view.h"
#include "shell/tvo_frame_base.h"
#include "view/rubber_line.h"
#include "view/tvo_view_kernel.h"

namespace {

void CopyList(CGouJianExList& to, const CGouJianExList& from) {
    to.RemoveAll();
    to.AddTail(from);
}

/// Wipes the old picture of a component, by its own primitives in the background colour, and draws the new one. The
/// colours of a list that was filled by hand are not GetDrawInfo's: they are kept.
void Redraw(CGouJianEx& obj, CDC& dc, CFCoor& coor, bool selfToo) {
    CDrawGraph& graph = *obj.GetDrawGraph();
    struct Look {
        std::uint32_t color;
        int lineType;
    };
    CArray<Look> looks;
    for (CGraphEntity* entity : graph.m_aEntity) {
        looks.Add({entity->m_dwColor, entity->m_nLineType});
        entity->SetColor(g_cTvoProfile.m_crBackground);
        entity->SetLineType(0);
        entity->Draw(&dc, &coor);
    }
    if (selfToo) obj.Draw(&dc, &coor);
    for (int i = 0; i < graph.m_aEntity.GetSize(); ++i) {
        CGraphEntity* const entity = graph.m_aEntity[i];
        unsigned long color = looks[i].color;
        int lineType = looks[i].lineType;
        obj.GetDrawInfo(obj.get_m_byteStatus(), entity->GetPart(), color, lineType);
        entity->SetColor(color);
        entity->SetLineType(lineType);
        entity->Draw(&dc, &coor);
    }
    if (selfToo) obj.Draw(&dc, &coor);
}

}  // namespace

// ---- all three --------------------------------------------------------------------------------------------

CSelectCommand::CSelectCommand(CTvoViewKernel* view, CTvoDataBase* db, int kind) {
    m_pView = view;
    m_pDataBase = db;
    m_nSelectKind = kind;
    m_bEchoPrompt = 0;
}

CSelectCommand::~CSelectCommand() { delete m_pOwner; }

void CSelectCommand::Init() {
    m_lstAdded.RemoveAll();
    m_lstRemoved.RemoveAll();
}

void CSelectCommand::Run() {
    Init();
    CDtWorkEx::Run();
}

template <class F>
bool CSelectCommand::Ask(F hook) {
    CDtWorkEx* const owner = m_pOwner;
    const bool stands = m_pView->Called(owner, [&] { hook(*owner); });
    return stands && m_pOwner == owner;
}

void CSelectCommand::OnPrepare() {
    if (m_pOwner) Ask([](CDtWorkEx& owner) { owner.OnPrepare(); });
}

void CSelectCommand::RegisterFunctionKey(CArray<unsigned, unsigned>& keys) {
    if (m_pOwner) Ask([&](CDtWorkEx& owner) { owner.RegisterFunctionKey(keys); });
}

void CSelectCommand::OnGetFunctionKey(unsigned code) {
    if (m_pOwner) Ask([&](CDtWorkEx& owner) { owner.OnGetFunctionKey(code); });
}

// The owner is let go of first: what its last hook does must not end it again.
void CSelectCommand::EndOwner(int bCancel) {
    CDtWorkEx* const owner = std::exchange(m_pOwner, nullptr);
    if (!owner) return;
    if (!m_pView->EndByHook(owner, bCancel)) return;
    m_pView->m_nObjectHint = 0;
    m_pView->SetWork(nullptr);
}

void CSelectCommand::OnComplete() {
    EndOwner(0);
    CDtWorkEx::OnComplete();
}

void CSelectCommand::OnCancel() { EndOwner(1); }

void CSelectCommand::CopyMap(CSelectCommand* other) {
    CopyList(m_lstAdded, other->m_lstAdded);
    CopyList(m_lstRemoved, other->m_lstRemoved);
}

void CSelectCommand::TakeFilter(std::uint8_t type, const CByteArray& types) {
    m_byteFilter = type;
    m_aFilter.RemoveAll();
    for (const std::uint8_t t : types) m_aFilter.Add(t);
}

unsigned CSelectCommand::OnQueryState() {
    if (m_pOwner) {
        unsigned state = 0;
        return Ask([&](CDtWorkEx& owner) { state = owner.OnQueryState(); }) ? state : 0;
    }
    COperStackItem top;
    if (m_pView->PeekViewStack(top) && top.m_pWork) m_pView->Called(top.m_pWork, [&] { top.m_pWork->OnQueryState(); });  // for its prompt
    else SetPromptText(m_strPrompt);
    return QS_POINT;
}

void CSelectCommand::ModifyBaseMap() {
    CDC& map = m_pView->m_cBaseMap;
    CFCoor& coor = m_pView->m_cCoor;
    for (CGouJianExList* list : {&m_lstAdded, &m_lstRemoved})
        for (POSITION p = list->GetHeadPosition(); p;) {
            CGouJianEx* const obj = list->GetNext(p);
            if (obj->m_bSelfDraw) obj->Draw(&map, &coor);
            else Redraw(*obj, map, coor, list == &m_lstAdded);
        }
}

// ---- single -----------------------------------------------------------------------------------------------

CSingleSelect::CSingleSelect(CTvoViewKernel* view, CTvoDataBase* db) : CSelectCommand(view, db, 0) {
    m_strName = "SingleSelect";
    m_nMouseMask = MN_LDOWN | MN_RDOWN;
    m_strPrompt = "单选, 按<TAB>键切换到其他选择方式, 鼠标右键结束选择";
}

CFRect CSingleSelect::PickBox(const CFPoint& point) const {
    const CPoint pixel = m_pView->PixelOf(point);
    const int left = pixel.x - CATCH_SIZE / 2, top = pixel.y - CATCH_SIZE / 2;
    return m_pView->m_cCoor.DPtoFP(CRect(left, top, left + CATCH_SIZE, top + CATCH_SIZE));
}

unsigned CSingleSelect::OnMouseNotify(unsigned event, unsigned keys, CFPoint point) {
    return event == MN_LDOWN ? OnLeftButton(keys, point) : OnRightButton(keys, point);
}

// Wherever the owner ends by its own answer there is nobody left to go on with.
unsigned CSingleSelect::OnLeftButton(unsigned keys, CFPoint point) {
    unsigned answer = 0;
    const auto notify = [&](unsigned event) {
        return Ask([&](CDtWorkEx& owner) { answer = owner.OnMouseNotify(event, keys, point); });
    };
    const auto query = [&] { return Ask([&](CDtWorkEx& owner) { answer = owner.OnQueryState(); }); };
    const auto give = [&](OBJECT_HINT hint, void* object) {
        return Ask([&](CDtWorkEx& owner) { answer = owner.OnGetObject(hint, object, 0); }) ? answer : unsigned{DTW_NONE};
    };
    if (m_pOwner && m_pOwner->m_bTakeClicks) {
        if (m_pOwner->m_nMouseMask == MN_LDOWN && (!notify(MN_LDOWN) || answer == DTW_NORMAL)) return answer;
        if (!query()) return DTW_NONE;
        return answer & QS_POINT ? give(OH_POINT, &point) : 0;
    }
    CFRect box = PickBox(point);
    Init();
    if (m_pOwner && !query()) return DTW_NONE;
    if (m_pOwner && (answer & QS_SELECT)) {
        if (m_pView->HitTest(box, m_pView->m_pSelectedList, 0, 1, m_lstAdded, m_lstRemoved)) AppendPromptText("1个对象被选中");
    } else {
        if (!m_pOwner) {
            auto* const window = static_cast<CWindowSelect*>(m_pView->m_pSelectCommand[1]);
            m_pView->m_nSelectKind = 1;
            m_pView->SetWork(window);
            window->m_bFromSingle = 1;
            window->OnPrepare();
            m_pView->m_aInputPoint[0] = point;
        }
        m_pView->m_nObjectHint = QS_POINT;
    }
    ModifyBaseMap();
    if (!m_pOwner) return DTW_NONE;
    if (m_pOwner->m_nMouseMask & MN_LDOWN) return notify(MN_LDOWN) ? answer : unsigned{DTW_NONE};
    if (!query()) return DTW_NONE;
    if (answer == QS_POINT) return give(OH_POINT, &point);
    if (answer != QS_SELECT) return answer;
    if (!m_lstAdded.IsEmpty()) return give(OH_OBJECT, m_lstAdded.GetHead());
    if (!m_lstRemoved.IsEmpty()) return give(OH_REMOVED, m_lstRemoved.GetHead());
    return answer;
}

unsigned CSingleSelect::OnRightButton(unsigned keys, CFPoint point) {
    unsigned answer = DTW_NONE;
    const auto notify = [&] {
        return Ask([&](CDtWorkEx& owner) { answer = owner.OnMouseNotify(MN_RDOWN, keys, point); });
    };
    const auto query = [&] { return Ask([&](CDtWorkEx& owner) { answer = owner.OnQueryState(); }); };
    if (m_pOwner && m_pOwner->m_bTakeClicks) {
        if (!notify()) return DTW_NONE;
        if (answer == DTW_NORMAL) return DTW_NORMAL;
        if (!query()) return DTW_NONE;
        if (answer & QS_TEXT) {
            CTvoFrameBase* const frame = Frame();
            const CString typed = frame ? frame->GetInput() : CString();
            std::string text = typed.GetString();
            const bool stands = Ask([&](CDtWorkEx& owner) { answer = owner.OnGetObject(OH_TEXT, text.data(), 1); });
            if (CPromptView* prompt = Prompt()) {
                prompt->AddPromptText(g_strPrompt + " " + typed, 0);
                prompt->ClearInput();
            }
            if (!stands) return DTW_NONE;
        }
        return answer == QS_FINISH ? DTW_NORMAL : DTW_POINT;
    }
    m_pView->m_bKeepSelected = 1;
    if (!m_pOwner) return DTW_NORMAL;
    if (!query()) return DTW_NONE;  // for its prompt
    return notify() ? answer : unsigned{DTW_NONE};
}

void CSingleSelect::DrawCursor(CTvoViewKernel* view, CFPoint& at, CDC* dc) {
    if (m_pOwner && m_pOwner->m_bTakeClicks) CDtWorkEx::DrawCursor(view, at, dc);
    else DrawRectCursor(view, at, dc);
}

void CSingleSelect::DrawRectCursor(CTvoViewKernel* view, CFPoint& at, CDC* dc) {
    const CPoint p = view->PixelOf(at);
    const int h = CATCH_SIZE / 2;
    CGdiObject* const old = dc->SelectStockObject(NULL_BRUSH);
    dc->Rectangle(p.x - h, p.y - h, p.x + h + 1, p.y + h + 1);
    dc->SelectObject(old);
}

// ---- window -----------------------------------------------------------------------------------------------

CWindowSelect::CWindowSelect(CTvoViewKernel* view, CTvoDataBase* db) : CSelectCommand(view, db, 1) {
    m_strName = "WindowSelect";
    m_strPrompt = "开窗选, 按<TAB>键切换到其他选择方式, 鼠标右键结束选择";
    SwitchRubberLine(new CRectSelectRubberLine, 0);
}

// A corner that a single select's click gave belongs to that window alone, however it ended.
void CWindowSelect::Run() {
    m_bFromSingle = 0;
    CSelectCommand::Run();
}

void CWindowSelect::OnComplete() {
    m_bFromSingle = 0;
    CSelectCommand::OnComplete();
}

void CWindowSelect::OnCancel() {
    m_bFromSingle = 0;
    CSelectCommand::OnCancel();
}

void CWindowSelect::OnPrepare() {
    if (m_bFromSingle) m_pView->m_nInputPoint = 1;
    CSelectCommand::OnPrepare();
}

unsigned CWindowSelect::OnGetObject(OBJECT_HINT hint, void* object, int byDefault) {
    if (m_pView->m_nInputPoint != 2) return QS_POINT;
    const CFPoint p0 = m_pView->m_aInputPoint[0], p1 = m_pView->m_aInputPoint[1];
    CFRect box(p0, p1);
    Init();
    const int changed = m_pView->HitTest(box, m_pView->m_pSelectedList, p0.x > p1.x ? 0 : 1, 0, m_lstAdded, m_lstRemoved);
    if (CPromptView* prompt = Prompt()) prompt->AddPromptText(changed ? "对象被选中" : "没有对象被选中", 0);
    m_bFromSingle = 0;
    ModifyBaseMap();
    if (m_pOwner) {
        unsigned answer = 0;
        return Ask([&](CDtWorkEx& owner) { answer = owner.OnGetObject(hint, object, byDefault); }) ? answer : 0;
    }
    m_pView->m_bKeepSelected = 1;
    return QS_FINISH;
}

void CWindowSelect::DrawCursor(CTvoViewKernel* view, CFPoint& at, CDC* dc) {
    const CPoint p = view->PixelOf(at);
    dc->MoveTo(p.x - CURSOR_SIZE, p.y);
    dc->LineTo(p.x + CURSOR_SIZE, p.y);
    dc->MoveTo(p.x, p.y - CURSOR_SIZE);
    dc->LineTo(p.x, p.y + CURSOR_SIZE);
}

// ---- polygon ----------------------------------------------------------------------------------------------

CPolygonSelect::CPolygonSelect(CTvoViewKernel* view, CTvoDataBase* db) : CSelectCommand(view, db, 2) {
    m_strName = "PolygonSelect";
    m_nMouseMask = MN_RDOWN;
    m_strPrompt = "多边形选, 按<TAB>键切换到其他选择方式, 鼠标右键结束选择";
}

void CPolygonSelect::Run() {
    m_nClickCount = 0;
    CSelectCommand::Run();
}

void CPolygonSelect::OnComplete() {
    ModifyBaseMap();
    m_nClickCount = 0;
    CSelectCommand::OnComplete();
}

void CPolygonSelect::OnCancel() {
    m_nClickCount = 0;
    CSelectCommand::OnCancel();
}

unsigned CPolygonSelect::OnMouseNotify(unsigned event, unsigned, CFPoint) {
    if (event != MN_RDOWN) return DTW_NONE;
    m_nClickCount = 0;
    return DTW_NORMAL;
}

unsigned CPolygonSelect::OnGetObject(OBJECT_HINT, void*, int) {
    ++m_nClickCount;
    if (m_nClickCount == 1) SwitchRubberLine(new CLineRubberLine, 1);
    if (m_nClickCount == 2) SwitchRubberLine(new CPolyRubberLine, 1);
    const int count = m_pView->m_nInputPoint;
    if (count < 3) return QS_POINT;
    CFRegion region;
    for (int i = 0; i < count; ++i) {
        CFPoint& point = m_pView->m_aInputPoint[i];
        point = m_pView->m_cCoor.PointTouYing(point);
        region.Add(CFShoot(point.x, point.y, 0));
    }
    Init();
    m_pView->ClearSelectedList();
    const int changed = m_pView->HitTest(region, m_pView->m_pSelectedList, IsNiShiZhen(region) ? 1 : 0, m_lstAdded, m_lstRemoved);
    if (CPromptView* prompt = Prompt()) prompt->AddPromptText(changed ? "对象被选中" : "没有对象被选中", 0);
    m_pView->m_bBaseMapDirty = 1;
    m_pView->m_bKeepSelected = 1;
    m_pView->Invalidate();
    return QS_POINT;
}

void CPolygonSelect::DrawCursor(CTvoViewKernel* view, CFPoint& at, CDC* dc) {
    const CPoint p = view->PixelOf(at);
    const CPoint arrow[] = {p, {p.x - 3, p.y + 5}, {p.x - 1, p.y + 5}, {p.x - 1, p.y + 13}, {p.x + 1, p.y + 13},
                            {p.x + 1, p.y + 5}, {p.x + 3, p.y + 5}, p};
    dc->Polyline(arrow, 8);
}

// ---- one by one -------------------------------------------------------------------------------------------

CShortSelect::CShortSelect() {
    m_nObjectHint = QS_SELECT;
    m_nSelectKind = 0;
    m_bSelectFirst = 1;
}

CGouJianEx* CShortSelect::ParseNewObject(CGouJianExList* added, CGouJianExList* removed) {
    for (POSITION p = added->GetHeadPosition(); p;) {
        CGouJianEx* const obj = added->GetNext(p);
        if (!m_mapPicked.Find(obj->get_m_dwGouJianID())) m_mapPicked.SetAt(obj->get_m_dwGouJianID(), obj);
    }
    for (POSITION p = removed->GetHeadPosition(); p;) m_mapPicked.RemoveKey(removed->GetNext(p)->get_m_dwGouJianID());
    return added->IsEmpty() ? nullptr : added->GetHead();
}
