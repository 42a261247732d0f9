// Shows a form as a dialog.
#pragma once

class CQtWindowSystem;
class QWidget;
struct DialogForm;

/// The index of the button, with the answers in the form; -1 when it was closed.
int RunQtDialog(CQtWindowSystem& system, QWidget* above, DialogForm& form);
