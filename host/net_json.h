// The net as JSON: the objects that tvo prints.
#pragma once
#include "host/json_text.h"

class CGjNetLine;
class CGjNetNode;
class CGridDataBase;
class CMianGouJian;
class CTvoLoad;

/// {"type":"node","id","no","x","y","storey"}
Json NodeJson(const CGjNetNode& node);

/// {"type":"line","id","no","start","end","arc","bulge","length","storey"}; start and end are identities of nodes.
Json LineJson(const CGjNetLine& line);

/// {"type":"plate","id","no","tag","area","perimeter","cx","cy","sides"}; sides is an array of shape sides, each one an
/// array of [line, direction] in the order of the walk, direction 1 along the line and 0 against it.
Json PlateJson(const CMianGouJian& plate);

/// {"type":"load","id","no","plate","value"}
Json LoadJson(const CTvoLoad& load);

/// {"type":"result","line","existed","swapped","degenerate"}: what the last AddNetLine or one of its kin did. `line`
/// may be null.
Json ResultJson(const CGjNetLine* line, const CGridDataBase& db);

/// {"type":"stat","nodes","lines","plates","dangling","area","canUndo","canRedo"}; the plates that follow the net, the
/// lines that no closed walk can use, and the area of these plates.
Json StatJson(CGridDataBase& db);
