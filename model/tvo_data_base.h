// CTvoDataBase: the model as the view and the commands see it.
#pragma once
#include <memory>

#include "fields/backgrnd.h"
#include "geometry/fpoint.h"
#include "geometry/frect.h"
#include "model/goujian_type.h"
#include "model/object_undo_contain_ex.h"
#include "platform/containers.h"
#include "platform/string.h"

class CChang;
class CDC;
class CFCoor;
class CFRegion;
class CGjChang;
class CGjText;
class CGouJianEx;
class CGraphEntity;
class CGridIndexServiceObject;
class CTvoFrameBase;
class CTvoViewKernel;
class CTvoViewMgr;
class CWnd;
enum FIELD_DISPLAY : int;  // fields/gj_chang.h

/// Holds the components with their log, a family and a numbered array per type byte, the spatial index and the
/// background grid. Each change passes through the virtual AddGouJian and DeleteGouJian, which keep these and
/// the view's view-port set in step. Works with no window: everything that touches the frame tests for it.
///
/// The container owns the components; families, numbered arrays, index, view-port set and selection borrow
/// them. A component that is about to be freed is taken out of all of them.
class CTvoDataBase {
public:
    CTvoDataBase();
    CTvoDataBase(const CTvoDataBase&) = delete;
    CTvoDataBase& operator=(const CTvoDataBase&) = delete;

    // --- the hooks of derived classes; the order of the slots is fixed ---
    virtual ~CTvoDataBase();
    virtual void OnInitialize() {}
    virtual void OnDestroyData() {}
    virtual int OnQueryDataDesc() { return 0; }
    /// Extent of the model; (0, 0) to (20000, 20000) when it is empty or has no frame.
    virtual CFRect GetFrect();
    virtual int IsVisible(CGouJianEx* obj);
    virtual CGouJianEx* FindGouJian(unsigned long id);                     // null when absent
    virtual CGouJianEx* FindGouJianByBH(unsigned char type, int no);       // linear; null when absent
    virtual int GouJianExists(CGouJianEx* obj);                            // an entry stands under its identity
    virtual unsigned long GetNextID(unsigned char type);
    virtual void DrawOne(CDC* dc, CFCoor* coor, CGouJianEx* obj);
    /// Paints what the view holds: net lines, then the rest, then nodes on top.
    virtual void Draw(CDC* dc, CFCoor* coor, unsigned char excludeType, unsigned char status);
    virtual void DrawSelected(CDC* dc, CFCoor* coor, unsigned char);
    virtual int CanBeSelected(CTvoFrameBase*, int, CGouJianEx*) { return 1; }
    virtual void SelectGouJian(unsigned char type, unsigned char status);
    virtual int DeleteGouJian(CList<CGouJianEx*, CGouJianEx*>& objects);
    /// Takes the component out of the model; the log keeps it. 0 for null and what is not in the model.
    virtual int DeleteGouJian(CGouJianEx* obj);
    virtual int AddGouJian(CList<CGouJianEx*, CGouJianEx*>& objects);
    /// Takes ownership, sets the storey and enters the component everywhere. 0 for null and what is in already.
    virtual int AddGouJian(CGouJianEx* obj);
    virtual void Undo(CWnd* wnd, CFCoor* coor);
    virtual void BeforeUndo(CList<CGouJianEx*, CGouJianEx*>&) {}  // the store has changed, families have not
    virtual void AfterUndo(CList<CGouJianEx*, CGouJianEx*>&) {}
    virtual void Redo(CWnd* wnd, CFCoor* coor);
    virtual void BeforeRedo(CList<CGouJianEx*, CGouJianEx*>&) {}
    virtual void AfterRedo(CList<CGouJianEx*, CGouJianEx*>&) {}
    virtual void OnAddGouJian(CGouJianEx* obj);
    virtual void OnDelGouJian(CGouJianEx* obj);
    virtual void EmbraceNewGouJian(CGouJianEx* obj);
    virtual void MergeViewPortObjects(CList<CGouJianEx*, CGouJianEx*>& objects, CArray<CZLX, CZLX>& types);
    virtual void RemoveGjFromViewPortObjects(CGouJianEx* obj);
    virtual void Start();
    virtual void UndoInit();
    virtual int CanUndo();
    virtual int CanRedo();
    // Appends every physical component that may lie in the rectangle (or the region's extent), by ascending
    // identity; a superset, to be narrowed by HitTest. Returns the size of `out`.
    virtual int GetInterRect(CFRect& rect, CArray<CGouJianEx*, CGouJianEx*>& out);
    virtual int GetInterRect(CFRect& rect, CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*>& out);
    virtual int GetInterRect(CFRect& rect, CList<CGouJianEx*, CGouJianEx*>& out);
    virtual int GetInterPoly(CFRegion& region, CArray<CGouJianEx*, CGouJianEx*>& out);
    virtual int GetInterPoly(CFRegion& region, CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*>& out);
    virtual int GetInterPoly(CFRegion& region, CList<CGouJianEx*, CGouJianEx*>& out);
    virtual int GetGouJianCount();
    virtual int GetGouJianCount(unsigned char type);
    /// With `physical` 0 the map stays as it was.
    virtual int GetGouJianListAll(CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*>& map, int physical);
    virtual int GetGouJianListAll(CList<CGouJianEx*, CGouJianEx*>& list);
    virtual int GetGouJianList(unsigned char type, CList<CGouJianEx*, CGouJianEx*>& list);
    virtual int GetGouJianMap(unsigned char type, CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*>& map);
    virtual int GetGouJianArray(unsigned char type, CArray<CGouJianEx*, CGouJianEx*>* array);
    virtual int GetGouJianArrayWithList(unsigned char type, CArray<CGouJianEx*, CGouJianEx*>& array,
                                        CList<CGouJianEx*, CGouJianEx*>* list);
    virtual int GetGouJianArrayWithMap(unsigned char type, CArray<CGouJianEx*, CGouJianEx*>& array,
                                       CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*>* map);
    /// Returns the family's size, not the array's.
    virtual int GetGouJianArrayExcept(unsigned char type, CArray<CGouJianEx*, CGouJianEx*>* array, CGouJianEx* except);
    virtual int CopyGouJianInViewPort(unsigned char type, CArray<CGouJianEx*, CGouJianEx*>& array);

    // --- life ---
    /// Makes the data base usable: called by the constructor, and again for a new model after DestroyData. A
    /// derived class's OnInitialize runs from such a later call only.
    void Initialize();
    /// Frees everything. Nothing but Initialize and the destructor may follow.
    void DestroyData();

    CBackgrnd& GetBackgrnd() { return m_cBackgrnd; }
    CObjectUndoContainEx& GetContain() { return m_cContain; }
    int GetCurCeng() const { return m_nCurCeng; }
    void SetCurCeng(int ceng) { m_nCurCeng = ceng; }

    // --- families ---
    void Clear_GouJian(unsigned char type);  // deletes each, so that it can be undone
    void Hide_GouJian(unsigned char type);
    void Show_GouJian(unsigned char type);
    void Set_GouJian_Status(unsigned char type, unsigned char status);  // has the view redraw each
    // Only those with the tag; this Set_ doesn't redraw.
    void Clear_GouJian(unsigned char type, unsigned long tag);
    void Hide_GouJian(unsigned char type, unsigned long tag);
    void Show_GouJian(unsigned char type, unsigned long tag);
    void Set_GouJian_Status(unsigned char type, unsigned char status, unsigned long tag);
    /// The highest tag of a family plus 1; 0 for type 0.
    unsigned long GetNextTagID(unsigned char type);

    // --- graphics components: plain components with one primitive, kept as given; the new one is returned ---
    CGouJianEx* DrawPoint(float x, float y, unsigned long colour, unsigned long tag, unsigned char status, int snap);
    CGouJianEx* DrawLine(float x1, float y1, float x2, float y2, float width, unsigned long colour, unsigned long tag,
                  unsigned char status, int snap);
    CGouJianEx* DrawArc(float x, float y, float r, float start, float end, float width, unsigned long colour,
                 unsigned long tag, unsigned char status, int snap);  // degrees
    CGouJianEx* DrawCircle(float x, float y, float r, float width, unsigned long colour, unsigned long tag,
                    unsigned char status, int snap);
    CGouJianEx* DrawCircleRgn(float x, float y, float r, unsigned long colour, unsigned long tag, unsigned char status, int snap);
    CGouJianEx* DrawPolygonRgn(CArray<CFPoint, CFPoint>& points, unsigned long colour, unsigned long tag, unsigned char status, int snap);
    /// A text component; angle in radians. Without a colour it has the profile's. The last argument is not read.
    CGjText* DrawTextA(float x, float y, CString text, unsigned long tag, unsigned char status, float height, float angle,
                       const unsigned long* colour, int unused);

    void ClearText(unsigned long tag) { Clear_GouJian(GJLX_TEXT, tag); }
    void HideText(unsigned long tag) { Hide_GouJian(GJLX_TEXT, tag); }
    void ShowText(unsigned long tag) { Show_GouJian(GJLX_TEXT, tag); }
    void ClearPoint(unsigned long tag) { Clear_GouJian(GJLX_POINT, tag); }
    void HidePoint(unsigned long tag) { Hide_GouJian(GJLX_POINT, tag); }
    void ShowPoint(unsigned long tag) { Show_GouJian(GJLX_POINT, tag); }
    void ClearLine(unsigned long tag) { Clear_GouJian(GJLX_LINE, tag); }
    void HideLine(unsigned long tag) { Hide_GouJian(GJLX_LINE, tag); }
    void ShowLine(unsigned long tag) { Show_GouJian(GJLX_LINE, tag); }
    void ClearArc(unsigned long tag) { Clear_GouJian(GJLX_ARC, tag); }
    void HideArc(unsigned long tag) { Hide_GouJian(GJLX_ARC, tag); }
    void ShowArc(unsigned long tag) { Show_GouJian(GJLX_ARC, tag); }
    void ClearCircle(unsigned long tag) { Clear_GouJian(GJLX_CIRCLE, tag); }
    void HideCircle(unsigned long tag) { Hide_GouJian(GJLX_CIRCLE, tag); }
    void ShowCircle(unsigned long tag) { Show_GouJian(GJLX_CIRCLE, tag); }
    void ClearPolygonRgn(unsigned long tag) { Clear_GouJian(GJLX_POLYGON_RGN, tag); }
    void HidePolygonRgn(unsigned long tag) { Hide_GouJian(GJLX_POLYGON_RGN, tag); }
    void ShowPolygonRgn(unsigned long tag) { Show_GouJian(GJLX_POLYGON_RGN, tag); }
    void ClearCircleRgn(unsigned long tag) { Clear_GouJian(GJLX_CIRCLE_RGN, tag); }
    void HideCircleRgn(unsigned long tag) { Hide_GouJian(GJLX_CIRCLE_RGN, tag); }
    void ShowCircleRgn(unsigned long tag) { Show_GouJian(GJLX_CIRCLE_RGN, tag); }
    void ClearChang(unsigned long tag) { Clear_GouJian(GJLX_CHANG, tag); }
    void HideChang(unsigned long tag) { Hide_GouJian(GJLX_CHANG, tag); }
    void ShowChang(unsigned long tag) { Show_GouJian(GJLX_CHANG, tag); }

    // --- fields ---
    /// Makes a component that shows a field, which must live as long as the component does. Null for no field.
    CGjChang* DrawChang(CChang* chang, int colorScheme, unsigned long tag, FIELD_DISPLAY display, float valueScale, int drawGrid,
                        int drawValue, unsigned char status);
    CGjChang* GetChang(unsigned long tag);  // the first with the tag, or null

    // --- texts ---
    /// Texts with the tag: a hidden one is shown as normal, any other hidden.
    void SwitchText(unsigned long tag);
    void ClearTextGouJianAll();
    // Heights of the text primitives in the display lists of these types (null: 1 to 254), never below 0. The
    // height that a text component itself keeps stays.
    void ScaleText(float factor, CArray<unsigned char, unsigned char>* types);
    void SetTextHeight(float height, CArray<unsigned char, unsigned char>* types);
    void ScaleTextGouJianOnly(float factor);
    void SetTextHeightTextGouJianOnly(float height);
    /// Plain width of a text in model units, at a height in model units.
    float GetTextWidth(CString text, float height);  // the fixed metric of model texts

    // --- numbering ---
    /// Numbers a family by rows (direction 'X') or columns into m_arrBianHao.
    void SortBianHao(unsigned char type);
    /// Numbers an array from `counter` on, which is moved past the last number; empties the array.
    void SortBianHao(unsigned char type, CArray<CGouJianEx*, CGouJianEx*>& array, int& counter);
    void SortBianHaoAll();

    // --- index ---
    void FinishIndex();
    /// Shows a wait cursor when more than 1000 components are pending. Waits for nothing.
    void WAIT_FOR_COMPLETE_INDEX();
    void RESTORE_CURSOR();
    void DrawGouJianByIndex(int seq, CTvoViewKernel* view);
    void DisplayIndexResult();
    void DisplayDebugInfo();

    void DrawOneType(CList<CGouJianEx*, CGouJianEx*>& objects, CDC* dc, CFCoor* coor);
    /// Writes a text dump for debugging; silently nothing if the path can't be written.
    void OutputData(CString path);
    /// Asks for a file and writes the drawing that the view shows (ExportDxf). 0 when the user cancels, else 1.
    int Write_DXF(CWnd* parent);

    int m_bNoRefresh = 0;                // non-zero: edits don't invalidate the view
    CString m_strDataName;               // class tag
    CTvoFrameBase* m_pFrame = nullptr;   // borrowed; null while there is no window
    CBackgrnd m_cBackgrnd;               // background grid
    CObjectUndoContainEx m_cContain;     // components and log
    CFRect m_rcData;                     // not used by the library
    int m_bBianHaoDirty = 0;             // numbers are stale
    CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*> m_mapFamily[kTypeCount];  // identity to component
    CArray<CGouJianEx*, CGouJianEx*> m_arrBianHao[kTypeCount];  // in number order, after SortBianHao
    int m_nCurCeng = -1;                 // current storey
    CGridIndexServiceObject* m_pIndex = nullptr;  // owned
    int m_bShowGraph = 1;                // 0: adding builds no graph and leaves the view alone
    int m_bBianHaoValid = 0;             // numbering has been done at least once
    char m_cSortDir = 'X';               // 'X' by rows, any other by columns

protected:
    /// Lets go of a component that is about to be freed; derived classes add what they borrow.
    std::function<void(CGouJianEx*)> m_onFree;
    /// The index with nothing pending.
    CGridIndexServiceObject& ReadyIndex();

private:
    CTvoViewMgr* View() const;           // the frame's, or null
    CTvoViewMgr* Showing() const;        // the frame's, or else the current one if it shows this model
    void ReplayHooks(CList<CGouJianEx*, CGouJianEx*>& objects, CArray<CZLX, CZLX>& types);
    void FinishReplay(CList<CGouJianEx*, CGouJianEx*>& objects, CArray<CZLX, CZLX>& types, CWnd* wnd);
    void BringIndexUpToDate();
    void LetGo(CGouJianEx* obj);
    void MarkViewStale();
    /// Gives a new component its identity, tag and status, and adds it.
    void Enroll(CGouJianEx* obj, unsigned char type, unsigned long tag, unsigned char status);
    CGouJianEx* AddGraphics(CGraphEntity* entity, unsigned char type, unsigned long colour, unsigned long tag,
                     unsigned char status, int snap);
    void ReplaceTextHeights(CArray<unsigned char, unsigned char>* types, float factor, bool scale);

    bool m_bNumbersStale[kTypeCount] = {};  // a component has left since the type's SortBianHao
    bool m_bWaitCursorShown = false;     // by WAIT_FOR_COMPLETE_INDEX, until RESTORE_CURSOR
    int m_hSavedCursor = 0;              // between WAIT_FOR_COMPLETE_INDEX and RESTORE_CURSOR
};

/// The current data base, set by Initialize, or null. SwitchContainer redirects it.
extern CTvoDataBase* g_pCurrentDataBase;
