// The commands with which somebody draws in tvo.
#pragma once
#include "view/dt_work_ex.h"

class CTvoHostDataBase;
class CTvoViewMgr;

/// Their identities. Each has a Chinese and an English name in the command table.
enum : int {
    kCmdLine = 0x20001,
    kCmdPolyline = 0x20002,
    kCmdRectangle = 0x20003,
    kCmdArc3 = 0x20004,
    kCmdArcCentre = 0x20005,
    kCmdCircle = 0x20006,
    kCmdErase = 0x20007,
    kCmdDistance = 0x20008,
    kCmdTextHeight = 0x20009,
};

/// Enters the names of all of them in the command table, after the library's own.
void AddEditCommands();
/// The names and what they do, for people.
std::string EditCommandHelp();
/// The command of an identity, ready for DoWork; null for one that is none of these.
CDtWorkEx* MakeEditCommand(int id, CTvoHostDataBase& db, CTvoViewMgr& view);
