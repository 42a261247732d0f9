// Asks for an axis grid and has it placed.
#pragma once

class CTvoHostDataBase;
class CTvoViewMgr;

/// The dialogs "正交轴网数据" and "圆弧轴网数据". After OK a command asks for the insertion point, with the
/// grid at the pointer; a number typed there is the angle. What was typed is proposed the next time.
void AskAxisGrid(CTvoHostDataBase& db, CTvoViewMgr& view, bool arc);
