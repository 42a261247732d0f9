// The stock commands that pick components.
#pragma once
#include "geometry/frect.h"
#include "platform/containers.h"
#include "view/dt_work_ex.h"

class CGouJianEx;

/// A selection, on top of the command that asked. It is a stock object: the view never deletes it, and TAB changes it for
/// another while the selection goes on. A host command with m_bSelectFirst runs through it: the select command then owns
/// it and speaks for it.
class CSelectCommand : public CDtWorkEx {
public:
    CSelectCommand(CTvoViewKernel* view, CTvoDataBase* db, int kind);
    ~CSelectCommand() override;
    void Run() override;         // both lists are emptied first
    void OnPrepare() override;   // these three go on to the owner
    void RegisterFunctionKey(CArray<unsigned, unsigned>& keys) override;
    void OnGetFunctionKey(unsigned code) override;
    void OnComplete() override;  // with the owner's, which is deleted
    void OnCancel() override;    // the same; not the base's
    int IsSelectCommand() override { return 1; }
    unsigned OnQueryState() override;

    void Init();
    void CopyMap(CSelectCommand* other);
    /// Draws what the last action changed into the base map, so that it shows without a rebuild.
    void ModifyBaseMap();
    void TakeFilter(std::uint8_t type, const CByteArray& types);

    CDtWorkEx* m_pOwner = nullptr;                      // owned
    CList<CGouJianEx*, CGouJianEx*> m_lstAdded{10};     // put into the selection by the last action; borrowed
    CList<CGouJianEx*, CGouJianEx*> m_lstRemoved{10};   // taken out by it; borrowed

protected:
    /// Calls a hook of the owner: false if the owner has ended by it.
    template <class F>
    bool Ask(F hook);

private:
    void EndOwner(int bCancel);  // and takes itself out of work
};

/// A pick box. Without an owner the click begins a window: it is deliberate that no object is picked.
class CSingleSelect : public CSelectCommand {
public:
    CSingleSelect(CTvoViewKernel* view, CTvoDataBase* db);
    unsigned OnMouseNotify(unsigned event, unsigned keys, CFPoint point) override;
    void DrawCursor(CTvoViewKernel* view, CFPoint& at, CDC* dc) override;
    CFRect PickBox(const CFPoint& point) const;  // CATCH_SIZE pixels about the point, world

private:
    void DrawRectCursor(CTvoViewKernel* view, CFPoint& at, CDC* dc);
    unsigned OnLeftButton(unsigned keys, CFPoint point);
    unsigned OnRightButton(unsigned keys, CFPoint point);
};

/// A rectangle. Drawn to the right it selects what lies inside, to the left what it touches.
class CWindowSelect : public CSelectCommand {
public:
    CWindowSelect(CTvoViewKernel* view, CTvoDataBase* db);
    void Run() override;
    void OnPrepare() override;
    void OnComplete() override;
    void OnCancel() override;
    unsigned OnGetObject(OBJECT_HINT hint, void* object, int byDefault) override;
    void DrawCursor(CTvoViewKernel* view, CFPoint& at, CDC* dc) override;

    int m_bFromSingle = 0;  // the single select's click was its first corner
};

/// A polygon. Drawn anticlockwise it selects what lies inside, clockwise what it touches; the selection follows each
/// point.
class CPolygonSelect : public CSelectCommand {
public:
    CPolygonSelect(CTvoViewKernel* view, CTvoDataBase* db);
    void Run() override;
    void OnComplete() override;
    void OnCancel() override;
    unsigned OnMouseNotify(unsigned event, unsigned keys, CFPoint point) override;
    unsigned OnGetObject(OBJECT_HINT hint, void* object, int byDefault) override;
    void DrawCursor(CTvoViewKernel* view, CFPoint& at, CDC* dc) override;

    int m_nClickCount = 0;
};

/// A base for host commands that pick objects one by one.
class CShortSelect : public CDtWorkEx {
public:
    CShortSelect();
    /// Keeps count of what is picked; the head of `added`, or null.
    CGouJianEx* ParseNewObject(CList<CGouJianEx*, CGouJianEx*>* added, CList<CGouJianEx*, CGouJianEx*>* removed);

    CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*> m_mapPicked;  // identity to component; borrowed
};
