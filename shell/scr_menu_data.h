// CScrMenuData: the tree of commands at the side of the frame.
#pragma once
#include "platform/canvas/icon.h"
#include "platform/containers.h"
#include "platform/string.h"

/// One entry. The tree stands in the parents' identities alone.
class CScrMenuItem {
public:
    virtual ~CScrMenuItem() = default;

    HICON m_hIcon = nullptr;
    CString m_szCmdLine;    // the typed name of the command
    CString m_szCaption;    // the text shown
    int m_nCmdID = -1;      // identity, also the command's
    int m_nParentID = -1;   // 0: an item of the root
    int m_nType = -1;       // 0 branch, 1 command, 2 separator
    int m_bHot = 0;         // under the pointer
    int m_bExpanded = 0;    // this branch stands open
    CString m_strTip;
    COLORREF m_nColor = 0;
};

class CScrMenuData {
public:
    static constexpr int kMostLetters = 30;

    /// Appends. Both strings are cut at 30 characters.
    void AddScrMenuItem(HICON icon, const char* cmdLine, const char* caption, int id, int parent, int type, const char* tip,
                        unsigned long colour);
    /// The first item with this command line, whatever its case; -1 if none.
    int GetCmdIdByCmdLine(const char* cmdLine) const;

    CArray<CScrMenuItem> m_arrItem;  // in order of insertion
};

extern CScrMenuData g_cScrnMenuData;
