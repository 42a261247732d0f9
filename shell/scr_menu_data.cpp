#include "shell/scr_menu_data.h"

#include <algorithm>
#include <unordered_set>
#include <vector>

#include "platform/gbk.h"
#include "shell/scr_menu_view.h"
#include "shell/shell_icons.h"
#include "shell/tvo_frame_base.h"

CScrMenuData g_cScrnMenuData;

namespace {

CString Cut(const char* text) {
    const std::string_view all(text ? text : "");
    return CString(all.substr(0, GbkCutLength(all, CScrMenuData::kMostBytes)));
}

CScrMenuItem MakeItem(HICON icon, const char* cmdLine, const char* caption, int id, int parent, int type) {
    CScrMenuItem item;
    item.m_hIcon = icon;
    item.m_szCmdLine = Cut(cmdLine);
    item.m_szCaption = Cut(caption);
    item.m_nCmdID = id;
    item.m_nParentID = parent;
    item.m_nType = type;
    return item;
}

CScrMenuItem Root() { return MakeItem(LoadShellIcon(kIconClosedFolder), "", "主菜单", 0, -1, SCRMENU_BRANCH); }

template <class Goes>
void Drop(CScrMenuItems& items, Goes goes) {
    CScrMenuItems left;
    for (const CScrMenuItem& item : items)
        if (!goes(item)) left.Add(item);
    items = left;
}

}  // namespace

CScrMenuView* CScrMenuData::View() const { return g_pFrame ? g_pFrame->GetScrMenuView() : nullptr; }

// ---- filling ----------------------------------------------------------------------------------------------

void CScrMenuData::AddScrMenuItem(HINSTANCE, unsigned short icon, const char* cmdLine, const char* caption, int id, int parent,
                                  int type, const char* tip, unsigned long colour) {
    AddScrMenuItem(LoadShellIcon(icon), cmdLine, caption, id, parent, type, tip, colour);
}

void CScrMenuData::AddScrMenuItem(HICON icon, const char* cmdLine, const char* caption, int id, int parent, int type,
                                  const char* tip, unsigned long colour) {
    CScrMenuItem item = MakeItem(icon, cmdLine, caption, id, parent, type);
    item.m_strTip = tip;
    item.m_nColor = colour & 0xFFFFFF;
    m_arrItem.Add(item);
}

void CScrMenuData::InsertScrMenuItem(HINSTANCE, unsigned short icon, const char* cmdLine, const char* caption, int id,
                                     int parent, int type, int beforeID) {
    const CScrMenuItem item = MakeItem(LoadShellIcon(icon), cmdLine, caption, id, parent, type);
    const CScrMenuItem* const before = Find(beforeID);
    if (!before) {
        m_arrItem.Add(item);
        return;
    }
    m_arrItem.InsertAt(static_cast<int>(before - &*m_arrItem.begin()), item);
    ReDrawScreenMenu();
}

// A circle of parents, or several items of one identity, are walked once.
void CScrMenuData::DeleteMenuItem(int id) {
    if (id == 0) return;
    std::unordered_set<int> gone{id};
    std::vector<int> open{id};
    while (!open.empty()) {
        const int parent = open.back();
        open.pop_back();
        if (parent == -1) continue;  // nameless items stand under many
        for (const CScrMenuItem& item : m_arrItem)
            if (item.m_nParentID == parent && item.m_nCmdID != 0 && gone.insert(item.m_nCmdID).second)
                open.push_back(item.m_nCmdID);
    }
    DeleteLeafItem(id);
    gone.erase(-1);
    Drop(m_arrItem, [&](const CScrMenuItem& item) { return gone.count(item.m_nParentID) != 0; });
    ReDrawScreenMenu();
}

void CScrMenuData::DeleteMenuItem(int id, int parent) {
    Drop(m_arrItem, [&](const CScrMenuItem& item) { return item.m_nCmdID == id && item.m_nParentID == parent; });
}

void CScrMenuData::DeleteChildItem(int parent) {
    Drop(m_arrItem, [&](const CScrMenuItem& item) { return item.m_nParentID == parent; });
}

void CScrMenuData::DeleteLeafItem(int id) {
    if (const CScrMenuItem* item = Find(id)) m_arrItem.RemoveAt(static_cast<int>(item - &*m_arrItem.begin()));
}

// ---- reading ----------------------------------------------------------------------------------------------

const CScrMenuItem* CScrMenuData::Find(int id) const {
    const auto found = std::find_if(m_arrItem.begin(), m_arrItem.end(), [&](const CScrMenuItem& item) { return item.m_nCmdID == id; });
    return found == m_arrItem.end() ? nullptr : &*found;
}

CScrMenuItem* CScrMenuData::GetObjectByID(int id) { return id == 0 ? nullptr : const_cast<CScrMenuItem*>(Find(id)); }

int CScrMenuData::GetObjectByID(int id, CScrMenuItem& item) const {
    if (id == 0) {
        item = Root();
        return 1;
    }
    const CScrMenuItem* const found = Find(id);
    if (!found) return 0;
    item = *found;
    return 1;
}

int CScrMenuData::SetMenuItemProperty(int id, const CScrMenuItem& item) {
    CScrMenuItem* const stored = GetObjectByID(id);
    if (!stored) return 0;
    const auto copy = [&](CScrMenuItem& to) {
        to.m_hIcon = item.m_hIcon;
        to.m_szCaption = Cut(item.m_szCaption);
        to.m_nParentID = item.m_nParentID;
        to.m_nType = item.m_nType;
    };
    copy(*stored);
    CScrMenuView* const view = View();
    if (!view) return 1;
    if (const int row = view->GetIndexByCmdID(id); row >= 0) copy(view->m_aShown[row]);
    view->Regenerate();
    return 1;
}

int CScrMenuData::GetParentItem(int id, CScrMenuItem& item) const {
    const CScrMenuItem* const child = id == 0 ? nullptr : Find(id);
    const CScrMenuItem* const parent = child && child->m_nParentID != 0 ? Find(child->m_nParentID) : nullptr;
    if (!parent) return 0;
    item = *parent;
    return 1;
}

void CScrMenuData::GetAncestorItems(int id, CScrMenuItems& items) const {
    std::vector<CScrMenuItem> chain;
    std::unordered_set<int> met{id};
    for (CScrMenuItem parent; GetParentItem(id, parent) && met.insert(parent.m_nCmdID).second;) {
        id = parent.m_nCmdID;
        chain.push_back(parent);
    }
    for (auto at = chain.rbegin(); at != chain.rend(); ++at) items.Add(*at);
}

void CScrMenuData::GetAllBuddyItems(int id, CScrMenuItems& items) const {
    if (const CScrMenuItem* item = id == 0 ? nullptr : Find(id)) GetChildItems(item->m_nParentID, items);
}

void CScrMenuData::GetChildItems(int id, CScrMenuItems& items) const {
    for (const CScrMenuItem& item : m_arrItem)
        if (item.m_nParentID == id) items.Add(item);
}

int CScrMenuData::GetCmdIdByCmdLine(const char* cmdLine) const {
    for (const CScrMenuItem& item : m_arrItem)
        if (!item.m_szCmdLine.IsEmpty() && item.m_szCmdLine.CompareNoCase(cmdLine) == 0) return item.m_nCmdID;
    return -1;
}

CString CScrMenuData::GetCmdLineByCmdId(int id) const {
    const CScrMenuItem* const item = Find(id);
    return item ? item->m_szCmdLine : CString();
}

CString CScrMenuData::GetCommndDiscByCmdId(int id) const {
    const CScrMenuItem* const item = Find(id);
    return item ? item->m_szCaption : CString();
}

void CScrMenuData::InsertRootMenu(CScrMenuItems& items) const { items.InsertAt(0, Root()); }

void CScrMenuData::EnsureRootMenu(CScrMenuItems& items) const {
    const bool there = std::any_of(items.begin(), items.end(), [](const CScrMenuItem& item) { return item.m_nCmdID == 0; });
    if (!there) InsertRootMenu(items);
}

// ---- the view ---------------------------------------------------------------------------------------------

void CScrMenuData::RefreshScrMenu() {
    if (CScrMenuView* view = View()) view->Regenerate();
}

void CScrMenuData::ReDrawScreenMenu() {
    if (CScrMenuView* view = View()) view->Invalidate();
}
