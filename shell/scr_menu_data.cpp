#include "shell/scr_menu_data.h"

CScrMenuData g_cScrnMenuData;

namespace {

CString FirstLetters(const char* text) {
    const std::string_view all(text ? text : "");
    std::size_t bytes = 0;
    for (int letters = 0; bytes < all.size(); ++bytes) {
        const bool begins = (static_cast<unsigned char>(all[bytes]) & 0xC0) != 0x80;
        if (begins && letters++ == CScrMenuData::kMostLetters) break;
    }
    return CString(all.substr(0, bytes));
}

}  // namespace

void CScrMenuData::AddScrMenuItem(HICON icon, const char* cmdLine, const char* caption, int id, int parent, int type,
                                  const char* tip, unsigned long colour) {
    CScrMenuItem item;
    item.m_hIcon = icon;
    item.m_szCmdLine = FirstLetters(cmdLine);
    item.m_szCaption = FirstLetters(caption);
    item.m_nCmdID = id;
    item.m_nParentID = parent;
    item.m_nType = type;
    item.m_strTip = tip;
    item.m_nColor = colour;
    m_arrItem.Add(item);
}

int CScrMenuData::GetCmdIdByCmdLine(const char* cmdLine) const {
    for (const CScrMenuItem& item : m_arrItem)
        if (!item.m_szCmdLine.IsEmpty() && item.m_szCmdLine.CompareNoCase(cmdLine) == 0) return item.m_nCmdID;
    return -1;
}
