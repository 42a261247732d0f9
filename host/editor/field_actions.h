// What the editor does with fields. Each tells in the prompt's history what came of it.
#pragma once

class CGjChang;
class CTvoHostDataBase;
class CTvoViewMgr;
enum FIELD_DISPLAY : int;

/// The field that commands speak of: the last one shown, or null.
CGjChang* CurrentField(CTvoHostDataBase& db);

/// Asks for a file, and for one of its values when it has several, and shows it in the place of other fields.
void OpenField(CTvoHostDataBase& db, CTvoViewMgr& view);
/// "场设置": which field and which of its values, how it looks; the range and the levels are told.
void AskFieldLook(CTvoHostDataBase& db, CTvoViewMgr& view);
void ShowFieldsAs(CTvoHostDataBase& db, CTvoViewMgr& view, FIELD_DISPLAY display);  // all that are shown
void SwitchFieldMesh(CTvoHostDataBase& db, CTvoViewMgr& view);                      // triangles on or off
void SwitchFieldNumbers(CTvoHostDataBase& db, CTvoViewMgr& view);                   // values at the nodes
/// A command that tells the value at each point that is clicked, until a right click.
void AskFieldValues(CTvoHostDataBase& db, CTvoViewMgr& view);
void DensifyCurrentField(CTvoHostDataBase& db, CTvoViewMgr& view);  // one undo step
void DeleteCurrentField(CTvoHostDataBase& db, CTvoViewMgr& view);   // one undo step
