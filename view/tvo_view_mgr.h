// The interactive view: what the model calls on it.
#pragma once
#include "geometry/fcoor.h"
#include "platform/containers.h"
#include "platform/window.h"

class CGouJianEx;
class CTvoDataBase;
class CTvoFrameBase;

/// The drawing surface of the editor: the view transform, the selection and the components inside the window.
/// All of these are borrowed from the data base, which takes a component out of them before it is freed.
class CTvoViewKernel : public CWnd {
public:
    CTvoViewKernel();
    CTvoViewKernel(const CTvoViewKernel&) = delete;
    CTvoViewKernel& operator=(const CTvoViewKernel&) = delete;
    ~CTvoViewKernel() override;

    /// Has the component's present picture repainted.
    void ReGenObject(CGouJianEx* pGouJian);

    CTvoFrameBase* m_pFrame = nullptr;    // borrowed; null while there is no frame
    CTvoDataBase* m_pDataBase = nullptr;  // borrowed
    CFCoor m_cCoor;                       // the view transform: plan view
    CList<CGouJianEx*>* m_pSelectedList;  // the current selection; the list is owned
    CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*> m_mapViewPort;  // components inside the window
    int m_bBaseMapDirty = 1;              // the picture of the model must be rebuilt on the next paint
};

/// The view with its services; the class that a frame holds.
class CTvoViewMgr : public CTvoViewKernel {
public:
    CTvoViewMgr();  // becomes the current view
};

/// The current view, or null. SwitchContainer redirects it.
extern CTvoViewMgr* g_pCurrentView;
