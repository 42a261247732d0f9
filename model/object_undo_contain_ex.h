// CObjectUndoContainEx: the owner of a model's components and the keeper of its undo log.
#pragma once
#include <cstdint>
#include <functional>

#include "geometry/frect.h"
#include "model/store_watcher.h"
#include "model/undo_object.h"
#include "platform/containers.h"

class CFCoor;
class CGouJianEx;
class CWnd;

/// A list of components in order of arrival, a map from identity to component, and a log of adds and deletes
/// grouped into steps. It owns every component in its list; one that has left belongs to its log record.
/// A component is never changed in place under undo: an undoable change deletes the old one and adds a new
/// one within a step. The list is only changed through the operations below.
class CObjectUndoContainEx : public CList<CGouJianEx*, CGouJianEx*> {
public:
    CObjectUndoContainEx();
    CObjectUndoContainEx(const CObjectUndoContainEx&) = delete;
    CObjectUndoContainEx& operator=(const CObjectUndoContainEx&) = delete;
    virtual ~CObjectUndoContainEx();

    // --- store ---
    /// Ends the step: the next add or delete opens a new one.
    void Start() {
        m_nStepState = 0;
        if (m_pWatcher) m_pWatcher->OnStepEnd();
    }
    /// Takes ownership and logs. 1, or 0 with nothing done for null or an object that is in a store already.
    int AddGoujian(CGouJianEx* pGouJian);
    /// Takes the component out and logs; it lives on in the log. 0 with nothing done when it is not in the store.
    int DeleteGouJian(CGouJianEx* pGouJian);
    int DeleteGouJian(unsigned long id);
    CGouJianEx* FindGouJian(unsigned long id);  // null when absent
    /// True while the object is in the list of some container.
    static bool IsHeld(const CGouJianEx* pGouJian);
    /// True while this very object is in the list of this one.
    bool Holds(const CGouJianEx* pGouJian) const;
    /// Has the processor fetch what a deletion of the component will need, while other work goes on.
    void FetchAhead(const CGouJianEx* pGouJian) const;
    void FetchEntryAhead(const CGouJianEx* pGouJian) const;  // the rest, a while after
    /// Frees the records and what they own, then the components of the list, and empties both and the map.
    void DestroyData();

    // --- undo: `objects` and `types` receive, in order of application, what was done to the store ---
    /// Takes the newest step back. A null window or transform skips the invalidation.
    void Undo(CWnd* wnd, CFCoor* coor, CList<CGouJianEx*, CGouJianEx*>& objects, CArray<CZLX, CZLX>& types);
    void Redo(CWnd* wnd, CFCoor* coor, CList<CGouJianEx*, CGouJianEx*>& objects, CArray<CZLX, CZLX>& types);
    int CanUndo() const { return m_bCanUndo; }
    int CanRedo() const { return m_bCanRedo; }
    /// Empties the log; components, counters of identities and the modified flag stay.
    void UndoInit();

    // --- identities ---
    /// A fresh identity of a type: type byte and sequence number. Sequence numbers are never reused, even
    /// those of deleted components; past 0xFFFFFE it reports error 201 at each call and goes on wrapped.
    unsigned long GetNextID(unsigned char type);
    unsigned long GetNextXuHaoFromMap(unsigned char type);
    /// Moves the counter of a type up to n, never down.
    void SetNextXuHaoToMap(unsigned char type, unsigned long n);
    /// Where the counter of a type stands; 0 before the first. Uses nothing up.
    unsigned long HighestXuHao(unsigned char type) const;
    /// Sets the counter of a type, also down: for a model that comes from a file. No identity above n may be in use.
    void RestoreXuHao(unsigned char type, unsigned long n) { m_mapNextXuHao.SetAt(type, n); }

    // --- the rest ---
    /// Extent of the shown physical components; the transform is not used.
    CFRect GetMaxRect(CFCoor*);
    unsigned char GetContainNo() const { return m_byteContainNo; }
    void SetContainNo(unsigned char no) { m_byteContainNo = no; }
    void SetModifiedFlag(int modified) { m_bModified = modified; }
    int IfModified() const { return m_bModified; }

    /// Called with each component that is about to be freed, so that whoever borrows it can let go.
    void SetFreeHook(std::function<void(CGouJianEx*)> hook) { m_onFree = std::move(hook); }
    /// Has somebody told of every change from now on; null for nobody. Borrowed.
    void SetWatcher(CStoreWatcher* watcher) { m_pWatcher = watcher; }
    CStoreWatcher* GetWatcher() const { return m_pWatcher; }

protected:
    int GetTotalSteps() const { return m_nTotalSteps; }
    void SetTotalSteps(int steps) { m_nTotalSteps = steps; }
    int AddGouJianDirect(CGouJianEx* pGouJian);
    int DeleteGouJianDirect(CGouJianEx* pGouJian);
    int DeleteGouJianDirect(unsigned long id);
    /// Logs one record. It may open a step, drop the oldest one and cut off what could be redone.
    void SaveObjects(CZLX eType, CGouJianEx* pGouJian);

    unsigned char m_byteContainNo = 1;  // number of this container
    CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*> m_mapGouJian;  // identity to component
    int m_nTotalSteps = 50;             // step limit: one less complete steps are kept
    CTypedPtrList<CPtrList, CUndoObjectEx*> m_listUndo;  // the log, oldest record at the head
    POSITION m_posUndo = nullptr;       // last record of the newest step that is done
    POSITION m_posRedo = nullptr;       // first record of the oldest step that is undone
    CMap<unsigned char, unsigned char, unsigned long, unsigned long> m_mapNextXuHao;  // highest number per type
    int m_nStepState = 0;               // 0: the next record opens a step; 1: a step is open
    int m_bCanUndo = 0;
    int m_bCanRedo = 0;
    std::uint32_t m_nStepId = 0;        // number of the newest step
    std::uint32_t m_nStepCount = 0;     // steps in the log that are done
    int m_bModified = 0;                // set by every direct add and delete

private:
    friend class CTvoDataBase;
    void FreeRecord(CUndoObjectEx* record);
    void FreeAllRecords();
    void ApplyRecord(CZLX eDone, CGouJianEx* pGouJian, CWnd* wnd, CFCoor* coor,
                     CList<CGouJianEx*, CGouJianEx*>& objects, CArray<CZLX, CZLX>& types);

    std::function<void(CGouJianEx*)> m_onFree;
    CStoreWatcher* m_pWatcher = nullptr;
    std::uint8_t m_nOwner;  // what the components of this one are marked with; 0 when all numbers are taken
};
