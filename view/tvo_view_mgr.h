// CTvoViewMgr: the view that hosts use, with its services.
#pragma once
#include "view/scale_limits.h"
#include "view/tvo_view_kernel.h"

/// The view with its stock commands. `_Svr_` are what a user asks for: they tell him and start commands; `_Fun_` do the
/// work on the transform.
class CTvoViewMgr : public CTvoViewKernel {
public:
    CTvoViewMgr();  // becomes the current view
    ~CTvoViewMgr() override;  // writes the last view to the settings

    void DoWork(CDtWorkEx* pWork) override;  // cancels what runs
    void OnDraw(CDC* dc) override;
    void OnOverlapBaseMap(CDC* dc) override;
    /// The corners of the model, and of the grid while it shows; 1.
    virtual int GetMaxRect(CFPoint& low, CFPoint& high);

    // --- services
    void _Svr_ShowAgain();
    void _Svr_ShowAll() { _Fun_ShowAll(); }
    void _Svr_Extends();
    void _Svr_ShowMove();
    void _Svr_ShowRect();
    void _Svr_ShowPre() { _Fun_ShowPre(); }
    void _Svr_ShowZoomIn();
    void _Svr_ShowZoomOut();
    void _SvrSwitchShowMethod();
    void _Svr_Undo(int bMsg);
    void _Svr_Redo(int bMsg);
    void _Svr_SwitchCoordDisplay();
    void _Svr_SwitchGridDisplay();
    void _Svr_SwitchOrthoSnap();
    void _Svr_SwitchGridSnap();
    void _Svr_SwitchObjectSnap();
    void _Svr_SwitchAngleSnap();
    void _Svr_ShowHighLight(float x, float y, float size);
    int _Can_Select();
    void _Svr_EditSSelect();
    void _Svr_EditWSelect();
    void _Svr_EditMSelect();
    void _Svr_EditSwitchSelectMethod();
    void _Svr_SwitchToNextSelectMethod();

    // --- functions
    void _Fun_ShowRect(const CFPoint& a, const CFPoint& b, int bRedraw, int bAllObjects);
    void _Fun_SaveCoor();
    void _Fun_ShowAll();
    void _Fun_ShowPre();
    void _Fun_ShowMove(const CFPoint& from, const CFPoint& to);
    void _Fun_CenterAt(float x, float y);
    void _Fun_GetCurrShow(CFCoor* coor);
    void _Fun_SetCurrShow(CFCoor* coor);
    void _Fun_ShowHighLight(CDC* dc);
    void SaveCurrentViewState();
    void RestoreCurrentViewState();
    void ReadLastCoordinateFromReg();
    void WriteLastCoordinateToReg();
    /// The transform moves by start minus end; the cursor keeps its pixel.
    void PanBy(const CFPoint& from, const CFPoint& to);

    struct Spot {
        float x = 0, y = 0;
    } m_cHighLight;                   // a marked spot
    int m_bHighLight = 0;
    float m_fHighLightSize = 100.0f;  // half its size, model units
    int m_nStateToggle = 0;           // odd: a state is saved
    CFPoint m_cSavedCursor, m_cSavedOffset;
    CFCoor m_cSavedCoor;
    CArray<unsigned, unsigned> m_aReserved;  // for hosts
    int m_bOverlay = 0;               // the data base's overlay is drawn
    int m_nTextHeight = 1200;         // model units

protected:
    void OnMButtonDown(UINT keys, CPoint p) override;

private:
    void Toggle(int& flag);
    void Zoom(bool in);
    void CenterOn(double x, double y, float scale);
    void KeepCursorAt(const CPoint& pixel) { m_cCursor = WorldOf(pixel); }
    void StartSelection(int kind);
    void Say(const char* text);
    void History(const char* text);
};

/// The current view, or null. SwitchContainer redirects it.
extern CTvoViewMgr* g_pCurrentView;
