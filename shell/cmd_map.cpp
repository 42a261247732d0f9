#include "shell/cmd_map.h"

#include <algorithm>

CCmdMap g_cCmdMap;

const CCmdItem* CCmdMap::Find(const CString& line) const {
    const auto found = std::find_if(m_arrItem.begin(), m_arrItem.end(), [&](const CCmdItem& item) {
        return item.m_strCommandLine.CompareNoCase(line.GetString()) == 0;
    });
    return found == m_arrItem.end() ? nullptr : &*found;
}

bool CCmdMap::CommandIDExists(int id) const {
    return std::any_of(m_arrItem.begin(), m_arrItem.end(), [&](const CCmdItem& item) { return item.m_nCommandID == id; });
}

void CCmdMap::AddCommandMap(const CString& line, int id, int data) {
    if (CommandLineExists(line) && CommandIDExists(id)) return;
    CCmdItem item;
    item.m_strCommandLine = line;
    item.m_nCommandID = id;
    item.m_nUserData = data;
    m_arrItem.Add(item);
}

void CCmdMap::AddBasicCommands() {
    AddCommandMap("Pan", CMD_PAN, 1);
    AddCommandMap("P", CMD_PAN, 1);
    AddCommandMap("Zoom", CMD_ZOOM, 1);
    AddCommandMap("Z", CMD_ZOOM, 1);
    AddCommandMap("Undo", CMD_UNDO, 0);
    AddCommandMap("U", CMD_UNDO, 0);
    AddCommandMap("Redo", CMD_REDO, 0);
    AddCommandMap("Re", CMD_REDO, 0);
}

void CCmdMap::GetCommandIDByString(const CString& line, int& id, int& data) const {
    const CCmdItem* const item = Find(line);
    id = item ? item->m_nCommandID : -1;
    if (item) data = item->m_nUserData;
}
