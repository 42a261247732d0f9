// The list of what keeps cells of the net open.
#pragma once

class CEditFrame;

/// Checks the net and shows what it finds in a window; a click on a row goes there and marks the place. With nothing
/// found the prompt says so.
void ShowCheckList(CEditFrame& frame);
