// The net as JSON: the objects that tvo prints.
#pragma once
#include "host/json_text.h"

class CGjNetLine;
class CGjNetNode;
class CGridDataBase;

/// {"type":"node","id","no","x","y","storey"}
Json NodeJson(const CGjNetNode& node);

/// {"type":"line","id","no","start","end","arc","bulge","length","storey"}; start and end are identities of nodes.
Json LineJson(const CGjNetLine& line);

/// {"type":"result","line","existed","swapped","degenerate"}: what the last AddNetLine or one of its kin did. `line`
/// may be null.
Json ResultJson(const CGjNetLine* line, const CGridDataBase& db);

/// {"type":"stat","nodes","lines","canUndo","canRedo"}
Json StatJson(CGridDataBase& db);
