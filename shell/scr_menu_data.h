// CScrMenuData: the tree of commands at the side of the frame.
#pragma once
#include "platform/canvas/icon.h"
#include "platform/containers.h"
#include "platform/string.h"

class CScrMenuView;

/// The module whose pictures a number means. There is one set here, whatever it is.
using HINSTANCE = void*;
inline HINSTANCE g_hInstance = nullptr;

enum : int { SCRMENU_BRANCH = 0, SCRMENU_COMMAND = 1, SCRMENU_SEPARATOR = 2 };  // m_nType

/// One entry. The tree stands in the parents' identities alone.
class CScrMenuItem {
public:
    virtual ~CScrMenuItem() = default;

    HICON m_hIcon = nullptr;
    CString m_szCmdLine;    // the typed name of the command; at most 30 bytes of GBK
    CString m_szCaption;    // the text shown; the same
    int m_nCmdID = -1;      // identity, also the command's
    int m_nParentID = -1;   // 0: an item of the root
    int m_nType = -1;       // 0 branch, 1 command, 2 separator
    int m_bHot = 0;         // under the pointer
    int m_bExpanded = 0;    // this branch stands open
    CString m_strTip;
    COLORREF m_nColor = 0;  // of the text
};

using CScrMenuItems = CArray<CScrMenuItem, CScrMenuItem>;

/// The items in order of insertion. The root, identity 0, is not stored: it is made where it is asked for. Parents may go
/// round in a circle; every walk ends all the same.
class CScrMenuData {
public:
    static constexpr std::size_t kMostBytes = 30;  // of GBK, in a command line or a caption; more is cut

    // --- filling
    void AddBasicScrnMenu() {}  // nothing of the library's own; hosts fill the tree
    void AddScrMenuItem(HINSTANCE module, unsigned short icon, const char* cmdLine, const char* caption, int id, int parent,
                        int type, const char* tip, unsigned long colour);
    void AddScrMenuItem(HICON icon, const char* cmdLine, const char* caption, int id, int parent, int type, const char* tip,
                        unsigned long colour);
    /// In front of the item `beforeID`, and the view is repainted; at the end, without that, if there is no such item.
    void InsertScrMenuItem(HINSTANCE module, unsigned short icon, const char* cmdLine, const char* caption, int id, int parent,
                           int type, int beforeID);
    void DeleteMenuItem(int id);              // with all below it; never the root
    void DeleteMenuItem(int id, int parent);  // every item with this identity and this parent
    void DeleteChildItem(int parent);         // all right under it
    void DeleteLeafItem(int id);              // the first of this identity
    void ClearAllItems() { m_arrItem.RemoveAll(); }

    // --- reading; 0 or null: there is none
    int GetMenuItemProperty(int id, CScrMenuItem& item) const { return GetObjectByID(id, item); }
    /// Icon, caption, parent and type go to the stored item and to the row shown.
    int SetMenuItemProperty(int id, const CScrMenuItem& item);
    int ObjectExists(int id) { return GetObjectByID(id) != nullptr; }
    CScrMenuItem* GetObjectByID(int id);  // null for the root
    int GetObjectByID(int id, CScrMenuItem& item) const;  // the root too
    int GetParentItem(int id, CScrMenuItem& item) const;  // the root is nobody's parent here
    void GetAncestorItems(int id, CScrMenuItems& items) const;  // nearest last
    void GetAllBuddyItems(int id, CScrMenuItems& items) const;  // of the same parent, itself too
    void GetChildItems(int id, CScrMenuItems& items) const;
    /// The first item with this command line, whatever its case; -1 if none.
    int GetCmdIdByCmdLine(const char* cmdLine) const;
    CString GetCmdLineByCmdId(int id) const;
    CString GetCommndDiscByCmdId(int id) const;  // its caption
    void InsertRootMenu(CScrMenuItems& items) const;  // at the head
    void EnsureRootMenu(CScrMenuItems& items) const;  // unless it is there

    // --- the view, if there is one
    void RefreshScrMenu();     // its rows are made anew
    void ReDrawScreenMenu();   // as it stands

    CScrMenuItems m_arrItem;  // in order of insertion

private:
    const CScrMenuItem* Find(int id) const;
    CScrMenuView* View() const;
};

extern CScrMenuData g_cScrnMenuData;
