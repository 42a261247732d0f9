// CCmdMap: what the user types, as command identities.
#pragma once
#include "platform/containers.h"
#include "platform/string.h"

// The basic commands.
enum : int {
    CMD_PAN = 0x10001,
    CMD_ZOOM = 0x10002,
    CMD_UNDO = 0x10003,
    CMD_REDO = 0x10004,
    CMD_SINGLE_SELECT = 0x10005,
    CMD_WINDOW_SELECT = 0x10006,
    CMD_POLYGON_SELECT = 0x10007,
};

/// One line of the table.
class CCmdItem {
public:
    CString m_strCommandLine;
    int m_nCommandID = -1;
    int m_nUserData = 0;  // the host's; handed back
};

/// The table of typed commands. The first match of a line wins; case doesn't matter.
class CCmdMap {
public:
    /// Does nothing if the line is present and the identity is, in whatever items.
    void AddCommandMap(const CString& line, int id, int data);
    void AddBasicCommands();
    /// Identity and data of a line; -1 and the data as it was when there is none.
    void GetCommandIDByString(const CString& line, int& id, int& data) const;
    bool CommandLineExists(const CString& line) const { return Find(line) != nullptr; }
    bool CommandIDExists(int id) const;

    CArray<CCmdItem> m_arrItem;

private:
    const CCmdItem* Find(const CString& line) const;
};

extern CCmdMap g_cCmdMap;
