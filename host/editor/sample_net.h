// What the editor shows when it is started with nothing.
#pragma once

class CTvoHostDataBase;

/// Draws a small building with its axes into an empty model, its plates formed. There is nothing to undo
/// afterwards, and the model counts as saved.
void DrawSampleNet(CTvoHostDataBase& db);
