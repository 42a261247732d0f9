// What a command of the editor is. Families of commands stand in files of their own.
#pragma once
#include <span>

class CEditFrame;

/// One command: it stands in the command table under both names and in the screen menu under its branch. Its names hold
/// no blanks and at most 30 bytes of GBK.
struct EditorCommand {
    int id;
    const char* branch;   // caption of its branch in the screen menu
    const char* chinese;  // its name there, typed too
    const char* english;  // the other typed name
    const char* tip;
    void (*run)(CEditFrame& frame);
};

// The families, each in the order of the menu. Identities begin at the base of the family.
std::span<const EditorCommand> FileEditorCommands();     // 0x30001: open, save, DXF, print, record
std::span<const EditorCommand> PlateEditorCommands();    // 0x40001
std::span<const EditorCommand> FieldEditorCommands();    // 0x50001
std::span<const EditorCommand> SettingEditorCommands();  // 0x60001: snapping, steps, axis grids
std::span<const EditorCommand> QueryEditorCommands();    // 0x70001: coordinates, distance, area, check, storeys, texts
std::span<const EditorCommand> RecordEditorCommands();   // 0x90001
