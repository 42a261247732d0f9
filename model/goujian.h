// CGouJianEx: what the rest of the system may assume of any component of a model.
#pragma once
#include <cstdint>
#include <cstdio>

#include "geometry/fpoint.h"
#include "geometry/frect.h"
#include "model/goujian_type.h"
#include "model/host_params.h"
#include "platform/containers.h"
#include "platform/pool.h"

class CBase_SGT;
class CDC;
class CDrawGraph;
class CFCoor;
class CFRegion;
class CTvoDataBase;
class CTvoViewMgr;
struct CPoint;

/// Private marks that the container and the spatial index put on a component, so that both find their entry
/// for it at once. They belong to the object, not to its value: a copy starts without those.
struct CGouJianMarks {
    CGouJianMarks() = default;
    CGouJianMarks(const CGouJianMarks& other) : m_bGraphDue(other.m_bGraphDue) {}
    CGouJianMarks& operator=(const CGouJianMarks& other) {
        m_bGraphDue = other.m_bGraphDue;
        return *this;
    }

    static constexpr std::uint32_t kNone = 0xFFFFFFFF;
    POSITION m_posInContain = nullptr;   // place in the container's list while the component is in the model
    std::uint32_t m_nIndexSlot = kNone;  // entry in the spatial index
    std::uint32_t m_nRecords : 22 = 0;   // records of the log that name the component; sticks at its limit
    std::uint32_t m_nOwner : 8 = 0;      // number of the container that holds it; 0: one without a number, or none
    std::uint32_t m_bLeftToLog : 1 = 0;  // a record that owned it is gone, and others still name it
    // The display list counts as built, and is filled when it is first asked for. A model has as many nodes as
    // lines, and few of their lists are ever looked at.
    std::uint32_t m_bGraphDue : 1 = 0;
};

/// A component ("GouJian"): an object of the model with an identity, a status, a storey and a display list.
/// The container owns it while it is in the model, a record of the undo log once it has left. A plain
/// CGouJianEx is usable: the graphics components are such, with a display list that was filled by hand.
///
/// The identity holds the type byte in its top 8 bits and the sequence number (XuHao) in the low 24. There is
/// no separate type field, so type and identity cannot disagree.
class CGouJianEx {
public:
    CGouJianEx();
    /// For hosts: parameters are 0 here where the default constructor puts -1. The host is expected to set
    /// m_nCeng and m_bPhysical itself; they start at -1 and 1.
    explicit CGouJianEx(CTvoDataBase* pDataBase);
    /// Copies every field, the pointer to the display list included: both objects then name one graph, and one
    /// of the two pointers must be cleared before both destructors run. Derived classes rely on this.
    CGouJianEx(const CGouJianEx&) = default;
    CGouJianEx& operator=(const CGouJianEx&) = default;
    TVO_POOLED_STORAGE

    // --- identity and status ---
    std::uint32_t get_m_dwGouJianID() const { return m_dwGouJianID; }
    void set_m_dwGouJianID(unsigned long id) { m_dwGouJianID = static_cast<std::uint32_t>(id & 0xFFFFFFFF); }
    std::uint32_t get_m_dwGouJianNO() const { return m_dwGouJianNO; }
    void set_m_dwGouJianNO(unsigned int no) {
        const bool changed = no != m_dwGouJianNO;
        m_dwGouJianNO = no;
        if (changed) TellWatcher();
    }
    unsigned char get_Gjlx() const { return static_cast<unsigned char>(m_dwGouJianID >> 24); }
    /// Replaces the type byte and leaves the sequence number.
    void set_Gjlx(unsigned char type) {
        m_dwGouJianID = (m_dwGouJianID & 0x00FFFFFF) | static_cast<std::uint32_t>(type) << 24;
    }
    unsigned char get_m_byteStatus() const { return m_byteStatus; }
    /// Stores, then tells On_set_m_byteStatus, also when the value is the one already held.
    void set_m_byteStatus(unsigned char status) {
        const bool changed = IsVisable() != (status != GJ_STATUS_HIDDEN);
        m_byteStatus = status;
        On_set_m_byteStatus(status);
        if (changed) TellWatcher();
    }
    bool IsVisable() const { return m_byteStatus != GJ_STATUS_HIDDEN; }
    /// Tells who watches the store that what is saved of this component has changed in place, if it stands in one.
    void TellWatcher() const {
        if (m_cMarks.m_posInContain) TellWatcherOfStore();
    }
    /// The display list, made empty at the first call. Never null; owned by the component.
    CDrawGraph* GetDrawGraph();

    // --- the hooks of derived classes; the order of the slots is fixed ---
    virtual ~CGouJianEx();  // deletes the display list
    virtual void On_set_m_byteStatus(unsigned char) {}
    /// A physical component takes part in the spatial index and in view-port bookkeeping.
    virtual int IsPhysicalGouJian() { return m_bPhysical; }
    /// Extent: what the display list covers, and every grip.
    virtual CFRect GetFrect();
    /// Fills whatever the component derives from its data. Runs once on entry into the store.
    virtual void OnCalcParameters() {}
    virtual CFPoint GetCentroid() { return {}; }
    /// Mode 1: all of the component lies inside; otherwise: it touches. 0 when hidden.
    virtual int HitTest(const CFRegion& region, int mode);
    virtual int HitTest(const CFRect& rect, int mode);
    /// As HitTest of a rectangle, hidden or not.
    virtual int IndexHitTest(const CFRect& rect, int mode);
    /// Snap points of the wanted kinds (a bit set); 0 with nothing touched when the type's switch is off. The
    /// points array is emptied first, the kinds array is not.
    virtual int QueryAbsSnapPoint(unsigned int mode, CArray<CFPoint>& points, CArray<int>& kinds);
    /// Appends the grips (JiaDian): the points at which a selected component can be taken.
    virtual int GetJiaDian(CArray<CFPoint>&) { return 0; }
    /// Deletes the display list. m_bGraphBuilt stays: only ReDraw fills a new one.
    virtual void ClearDrawGraph();
    /// Fills the display list.
    virtual int DrawGraph(CDrawGraph*) { return 0; }
    /// Colour and line type of a part for a status; both references stay as they are for a mode it doesn't know.
    virtual void GetDrawInfo(unsigned char /*status*/, char /*part*/, unsigned long& /*colour*/, int& /*lineType*/) {}
    virtual int Draw(CDC* dc, CFCoor* coor);
    /// Computes the parameters anew and, with a view, redraws. A null view is fine.
    virtual int ReGen(CTvoViewMgr* mgr);
    /// Has the view forget the component's picture and fills its display list anew, unless that is fixed.
    virtual int ReDraw(CTvoViewMgr* mgr);
    /// Non-zero: the component writes its own DXF through OutPutDXF.
    virtual int SelfOutPutDXF() { return 0; }
    virtual void OutPutDXF(CBase_SGT*, CFCoor*) {}
    /// Runs at each deletion from the model, also of one that undo brings back; not at the final freeing.
    virtual void OnDestroy() {}
    virtual int QueryBasicType() { return kBasicOther; }
    // Text and binary form: 1 done, 0 when the block expected was not found. The base stores nothing.
    virtual int SaveData(std::FILE*) { return 1; }
    virtual int LoadData(std::FILE*) { return 1; }
    virtual int WriteBinary(std::FILE*) { return 1; }
    virtual int ReadBinary(std::FILE*) { return 1; }
    /// The point by which the component is ordered for numbering.
    virtual CFPoint GetSortPoint() { return {}; }

    // --- comparators of the numbering ---
    /// Strictly greater x. No tolerance here, while rows have one: columns are exact, rows are not.
    static int GreaterThanX(CGouJianEx* a, CGouJianEx* b);
    /// Greater y by more than the net tolerance: rows nearer than that count as one.
    static int GreaterThanY(CGouJianEx* a, CGouJianEx* b);
    static int GreaterThanBH(CGouJianEx* a, CGouJianEx* b);      // display numbers, unsigned
    static int GreaterThanFEM_ID(CGouJianEx* a, CGouJianEx* b);  // analysis numbers, signed

    CTvoDataBase* m_pDataBase = nullptr;  // the data base it belongs to; borrowed
    std::uint32_t m_dwGouJianID = 0;      // identity: type byte and sequence number
    std::uint32_t m_dwGouJianNO = 0;      // display number (BianHao, BH)
    std::uint8_t m_byteStatus = 0;        // GJ_STATUS_...
    std::int32_t m_nFEM_ID = 0;           // number in an analysis model; the library only sorts by it
    std::uint32_t m_dwTag = 0;            // group tag of the caller's choice
    std::int32_t m_nCeng = -1;            // storey; set on entry into the store
    CHostParams<std::int32_t> m_aIntParam{-1};  // for hosts: only initialised and copied here
    CHostParams<double> m_aDblParam;            // for hosts
    int m_bPhysical = 1;         // what the base IsPhysicalGouJian returns
    int m_bParamCalculated = 0;  // OnCalcParameters has run
    int m_bSelfDraw = 0;         // paints itself in an overriding Draw, no graph is generated
    int m_bDrawBoth = 0;         // both the overriding Draw and the graph are painted
    int m_bGraphBuilt = 0;       // DrawGraph has filled the graph
    CDrawGraph* m_pDrawGraph = nullptr;  // display list; owned, null until asked for

private:
    friend class CObjectUndoContainEx;
    friend class CGridIndexServiceObject;
    void TellWatcherOfStore() const;

    CGouJianMarks m_cMarks;
};

/// Fills a square grip about a device point, if that point is on the screen.
void DrawGripSquare(CDC* dc, const CPoint& at);

/// Both replace the content of dest by the pointers of src; no component is copied.
void CopyGouJianExArray(CArray<CGouJianEx*>& dest, CArray<CGouJianEx*>& src);
void CopyGouJianExMap(CMap<unsigned long, CGouJianEx*>& dest, CMap<unsigned long, CGouJianEx*>& src);
