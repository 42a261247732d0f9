// The dialogs of what the view snaps to, its switches and its steps.
#pragma once
#include <string>
#include <utility>
#include <vector>


class CTvoDataBase;
class CTvoViewMgr;

/// "捕捉角度设置(度)": the ten directions of angle snapping. The first of them within reach wins, so their
/// order stays.
void AskSnapAngles(CTvoViewMgr& view);

/// "捕捉总信息": the six switches, the kinds of components that points are taken from, and the size of the
/// snap symbol.
void AskSnapSwitches(CTvoViewMgr& view);

/// "步长设置": the step of the arrow keys, and the spacings of the background grid.
void AskSteps(CTvoDataBase& db, CTvoViewMgr& view);

/// Puts angles, switches, types, size and step into the user's settings, and back in place; what is missing
/// or spoilt there changes nothing. The dialogs keep them at once. The background grid is the model's and no
/// setting.
inline constexpr const char* kSnapSettingsPath = "snap";  // group of what is kept between sessions
std::vector<std::pair<std::string, std::string>> SnapSettings(const CTvoViewMgr& view);  // name and value of each
void KeepSnapSettings(const CTvoViewMgr& view);
void ReadSnapSettings(CTvoViewMgr& view);
