#include "model/object_undo_contain_ex.h"

#include <atomic>
#include <bit>

#include "geometry/fcoor.h"
#include "model/goujian.h"
#include "platform/errors.h"
#include "platform/window.h"

CUndoObjectEx::~CUndoObjectEx() {
    if (OwnsGouJian()) delete m_pGouJian;
}

namespace {

constexpr std::uint32_t kMaxRecords = (1u << 22) - 1;

// Numbers of the containers that live in this process, of all threads: bit n - 1 is number n.
std::atomic<std::uint64_t> s_ownersTaken{0};

std::uint8_t TakeOwnerNumber() {
    std::uint64_t taken = s_ownersTaken.load();
    while (~taken != 0) {
        const int bit = std::countr_one(taken);
        if (s_ownersTaken.compare_exchange_weak(taken, taken | std::uint64_t{1} << bit))
            return static_cast<std::uint8_t>(bit + 1);
    }
    return 0;
}

void GiveOwnerNumberBack(int number) {
    if (number != 0) s_ownersTaken &= ~(std::uint64_t{1} << (number - 1));
}

}  // namespace

CObjectUndoContainEx::CObjectUndoContainEx() : m_nOwner(TakeOwnerNumber()) {}

CObjectUndoContainEx::~CObjectUndoContainEx() {
    DestroyData();
    if (m_pWatcher) m_pWatcher->OnGone();
    GiveOwnerNumberBack(m_nOwner);
}

// --- store ------------------------------------------------------------------------------------------------

bool CObjectUndoContainEx::IsHeld(const CGouJianEx* pGouJian) { return pGouJian && pGouJian->m_cMarks.m_posInContain; }

// The place that a component remembers may be one in the list of another container.
bool CObjectUndoContainEx::Holds(const CGouJianEx* pGouJian) const {
    if (!IsHeld(pGouJian) || pGouJian->m_cMarks.m_nOwner != m_nOwner) return false;
    // Containers beyond the numbers share the 0, and have to look. Slow, and rare.
    return m_nOwner != 0 || Find(const_cast<CGouJianEx*>(pGouJian)) != nullptr;
}

void CObjectUndoContainEx::FetchAhead(const CGouJianEx* pGouJian) const {
    __builtin_prefetch(pGouJian->m_cMarks.m_posInContain);
    m_mapGouJian.FetchAhead(pGouJian->get_m_dwGouJianID());
}

void CObjectUndoContainEx::FetchEntryAhead(const CGouJianEx* pGouJian) const {
    m_mapGouJian.FetchEntryAhead(pGouJian->get_m_dwGouJianID());
}

int CObjectUndoContainEx::AddGoujian(CGouJianEx* pGouJian) {
    if (!pGouJian || IsHeld(pGouJian)) return 0;
    SetNextXuHaoToMap(pGouJian->get_Gjlx(), pGouJian->get_m_dwGouJianID() & 0xFFFFFF);
    AddGouJianDirect(pGouJian);
    SaveObjects(CZLX_ADD, pGouJian);
    return 1;
}

int CObjectUndoContainEx::DeleteGouJian(CGouJianEx* pGouJian) {
    if (!Holds(pGouJian)) return 0;
    SaveObjects(CZLX_DELETE, pGouJian);
    DeleteGouJianDirect(pGouJian);
    return 1;
}

int CObjectUndoContainEx::DeleteGouJian(unsigned long id) { return DeleteGouJian(FindGouJian(id)); }

CGouJianEx* CObjectUndoContainEx::FindGouJian(unsigned long id) {
    CGouJianEx** found = m_mapGouJian.Find(id & 0xFFFFFFFF);
    return found ? *found : nullptr;
}

int CObjectUndoContainEx::AddGouJianDirect(CGouJianEx* pGouJian) {
    m_bModified = 1;
    pGouJian->m_cMarks.m_posInContain = AddTail(pGouJian);
    pGouJian->m_cMarks.m_nOwner = m_nOwner;
    pGouJian->m_cMarks.m_bLeftToLog = 0;
    m_mapGouJian.SetAt(pGouJian->get_m_dwGouJianID(), pGouJian);
    if (m_pWatcher) m_pWatcher->OnChanged(*pGouJian);
    return 1;
}

int CObjectUndoContainEx::DeleteGouJianDirect(CGouJianEx* pGouJian) {
    m_bModified = 1;
    RemoveAt(pGouJian->m_cMarks.m_posInContain);
    pGouJian->m_cMarks.m_posInContain = nullptr;
    m_mapGouJian.RemoveKey(pGouJian->get_m_dwGouJianID());
    if (m_pWatcher) m_pWatcher->OnChanged(*pGouJian);
    return 1;
}

int CObjectUndoContainEx::DeleteGouJianDirect(unsigned long id) {
    CGouJianEx* found = FindGouJian(id);
    return found ? DeleteGouJianDirect(found) : 0;
}

void CObjectUndoContainEx::DestroyData() {
    if (m_pWatcher) m_pWatcher->OnEmptied();
    FreeAllRecords();
    for (POSITION p = GetHeadPosition(); p;) {
        CGouJianEx* component = GetNext(p);
        if (m_onFree) m_onFree(component);
        delete component;
    }
    RemoveAll();
    m_mapGouJian.RemoveAll();
    // The positions would point into the emptied log.
    m_posUndo = m_posRedo = nullptr;
    m_bCanUndo = m_bCanRedo = 0;
}

// --- log --------------------------------------------------------------------------------------------------

// A host may add a component again that has left the model, so that several records name it. One that is in
// the model must not go with an old record, and one that is not goes with the last record that names it.
void CObjectUndoContainEx::FreeRecord(CUndoObjectEx* record) {
    CGouJianEx* component = record->m_pGouJian;
    CGouJianMarks& marks = component->m_cMarks;
    if (marks.m_nRecords != kMaxRecords) --marks.m_nRecords;
    if (record->OwnsGouJian() && !IsHeld(component)) marks.m_bLeftToLog = 1;
    const bool free = marks.m_bLeftToLog && marks.m_nRecords == 0;
    if (free && m_onFree) m_onFree(component);
    record->m_eType = free ? CZLX_DELETE : CZLX_ADD;  // as its destructor reads it: owned, or not
    record->m_bUndone = 0;
    delete record;
}

void CObjectUndoContainEx::FreeAllRecords() {
    while (!m_listUndo.IsEmpty()) FreeRecord(m_listUndo.RemoveHead());
}

void CObjectUndoContainEx::SaveObjects(CZLX eType, CGouJianEx* pGouJian) {
    if (m_nStepState == 0) {
        m_nStepState = 1;
        ++m_nStepId;
        ++m_nStepCount;
        // At least rather than equal, and in a loop: the limit may have been lowered meanwhile. The counter is
        // read with its sign: it falls behind the log by one for each wipe (below) and for each step that went
        // on after an undo without a Start, and round its unsigned zero it must not count as a full log.
        while (static_cast<std::int32_t>(m_nStepCount) >= m_nTotalSteps && !m_listUndo.IsEmpty()) {
            --m_nStepCount;
            const std::uint32_t oldest = m_listUndo.GetHead()->m_nStepId;
            while (!m_listUndo.IsEmpty() && m_listUndo.GetHead()->m_nStepId == oldest) {
                if (m_posUndo == m_listUndo.GetHeadPosition()) m_posUndo = nullptr;
                FreeRecord(m_listUndo.RemoveHead());
            }
        }
    }
    // m_posUndo is null both when everything was undone and when everything was redone, and the two are not
    // told apart: after the last redo the next edit empties the whole log, undoable steps included. That is
    // meant. The step in progress then has number 0 and the count is one behind the log, so that a later undo
    // takes it round to its unsigned maximum; only the test of the limit above reads it.
    if (m_posUndo) {
        while (!m_listUndo.IsEmpty() && m_listUndo.GetTailPosition() != m_posUndo) FreeRecord(m_listUndo.RemoveTail());
    } else if (!m_listUndo.IsEmpty()) {
        FreeAllRecords();
        m_nStepId = 0;
        m_nStepCount = 0;
    }
    m_posUndo = m_listUndo.AddTail(new CUndoObjectEx(m_nStepId, eType, pGouJian));
    // A component that was put in and taken out four million times is never freed rather than freed too early.
    if (pGouJian->m_cMarks.m_nRecords != kMaxRecords) ++pGouJian->m_cMarks.m_nRecords;
    m_bCanUndo = 1;
    m_bCanRedo = 0;
}

// Puts one record's component into the store or takes it out, and has the window repaint its place.
void CObjectUndoContainEx::ApplyRecord(CZLX eDone, CGouJianEx* pGouJian, CWnd* wnd, CFCoor* coor,
                                       CList<CGouJianEx*, CGouJianEx*>& objects, CArray<CZLX, CZLX>& types) {
    const auto invalidate = [&] {
        if (!wnd || !coor) return;
        CRect place = coor->FPtoDP(pGouJian->GetFrect());
        place.InflateRect(3, 3);
        wnd->InvalidateRect(&place, TRUE);
    };
    if (eDone == CZLX_ADD) {
        if (!IsHeld(pGouJian)) AddGouJianDirect(pGouJian);
        invalidate();
    } else {
        invalidate();
        if (Holds(pGouJian)) DeleteGouJianDirect(pGouJian);
    }
    objects.AddTail(pGouJian);
    types.Add(eDone);
}

void CObjectUndoContainEx::Undo(CWnd* wnd, CFCoor* coor, CList<CGouJianEx*, CGouJianEx*>& objects,
                                CArray<CZLX, CZLX>& types) {
    if (!m_bCanUndo) return;
    if (m_pWatcher) m_pWatcher->OnStepEnd();
    if (!m_posUndo) m_posUndo = m_listUndo.GetTailPosition();
    POSITION last = nullptr;  // the record undone last, so the oldest of the step
    const std::uint32_t step = m_posUndo ? m_listUndo.GetAt(m_posUndo)->m_nStepId : 0;
    while (m_posUndo && m_listUndo.GetAt(m_posUndo)->m_nStepId == step) {
        last = m_posUndo;
        CUndoObjectEx* record = m_listUndo.GetPrev(m_posUndo);
        record->m_bUndone = 1;
        ApplyRecord(record->m_eType == CZLX_ADD ? CZLX_DELETE : CZLX_ADD, record->m_pGouJian, wnd, coor, objects, types);
    }
    if (m_posUndo) {
        m_posRedo = last;
    } else {
        m_bCanUndo = 0;
        m_posRedo = nullptr;
    }
    m_bCanRedo = 1;
    --m_nStepCount;
}

void CObjectUndoContainEx::Redo(CWnd* wnd, CFCoor* coor, CList<CGouJianEx*, CGouJianEx*>& objects,
                                CArray<CZLX, CZLX>& types) {
    if (!m_bCanRedo) return;
    if (m_pWatcher) m_pWatcher->OnStepEnd();
    if (!m_posRedo) m_posRedo = m_listUndo.GetHeadPosition();
    POSITION last = nullptr;
    const std::uint32_t step = m_posRedo ? m_listUndo.GetAt(m_posRedo)->m_nStepId : 0;
    while (m_posRedo && m_listUndo.GetAt(m_posRedo)->m_nStepId == step) {
        last = m_posRedo;
        CUndoObjectEx* record = m_listUndo.GetNext(m_posRedo);
        record->m_bUndone = 0;
        ApplyRecord(record->m_eType, record->m_pGouJian, wnd, coor, objects, types);
    }
    if (m_posRedo) {
        m_posUndo = last;
    } else {
        m_bCanRedo = 0;
        m_posUndo = nullptr;
    }
    m_bCanUndo = 1;
    ++m_nStepCount;
}

void CObjectUndoContainEx::UndoInit() {
    m_nTotalSteps = 50;
    m_posUndo = m_posRedo = nullptr;
    m_nStepState = 0;
    m_nStepId = m_nStepCount = 0;
    m_bCanUndo = m_bCanRedo = 0;
    FreeAllRecords();
}

// --- identities -------------------------------------------------------------------------------------------

unsigned long CObjectUndoContainEx::GetNextXuHaoFromMap(unsigned char type) { return ++m_mapNextXuHao[type]; }

void CObjectUndoContainEx::SetNextXuHaoToMap(unsigned char type, unsigned long n) {
    unsigned long* highest = m_mapNextXuHao.Find(type);
    if (!highest)
        m_mapNextXuHao.SetAt(type, n);
    else if (n > *highest)
        *highest = n;
}

unsigned long CObjectUndoContainEx::GetNextID(unsigned char type) {
    unsigned long n = GetNextXuHaoFromMap(type);
    if (n > 0xFFFFFE) {
        tell_error(201, "错误：同类构件累计数目已超过了设计极限，软件不能继续运行!");
        n -= 0xFFFFFE;  // the counter itself stays, so that every later call says so again
    }
    return static_cast<unsigned long>(type) << 24 | (n & 0xFFFFFF);
}

unsigned long CObjectUndoContainEx::HighestXuHao(unsigned char type) const {
    const unsigned long* highest = m_mapNextXuHao.Find(type);
    return highest ? *highest : 0;
}

// --- extent -----------------------------------------------------------------------------------------------

CFRect CObjectUndoContainEx::GetMaxRect(CFCoor*) {
    CFRect extent;
    bool first = true;
    for (POSITION p = GetHeadPosition(); p;) {
        CGouJianEx* component = GetNext(p);
        if (!component->IsVisable() || component->IsPhysicalGouJian() != 1) continue;
        const CFRect box = component->GetFrect();
        if (first) {
            extent = box;  // as it stands, even when all zero
            first = false;
        } else if (box.m_fMinX != 0 || box.m_fMinY != 0 || box.m_fMaxX != 0 || box.m_fMaxY != 0) {
            extent = extent.UnionFRect(box);
        }
    }
    return extent;
}
