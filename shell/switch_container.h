// Which of several models the process works on.
#pragma once

class CGridDataBase;

/// Makes another data base the current one, for the net's readers too. With a second argument other than 0 its
/// frame becomes the frame of the process, and the frame's view the current view, which shows it from now on.
void SwitchContainer(CGridDataBase* db, int withView);
