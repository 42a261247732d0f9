// What a dialog asks, without a word about the toolkit that shows it.
#pragma once
#include <functional>
#include <string>
#include <utility>
#include <vector>

class CView;

/// One line of a dialog, or what its lines stand in. Values are texts in UTF-8.
struct DialogField {
    enum class Kind {
        kText,     // any text
        kNumber,   // a number; the dialog takes any text, m_check of the form judges
        kCheck,    // "1" or "0"
        kSlider,   // a whole number between m_least and m_most, told at each step of the slider
        kChoice,   // the index of one of the choices, "0" and up
        kTicks,    // one letter for each choice: 1 ticked, 0 not. Choices may have cells parted by "\t", under m_heads
        kTable,    // rows ended by "\n", cells parted by "\t"; choices are the heads of the columns
        // Not asked:
        kNote,     // a text
        kWarning,  // a note that stands out; takes no room while it is empty
        kFrame,    // a frame with the label as its title about what follows, up to the next frame; without a label: none
        kPreview,  // the place of the form's preview; without such a line it stands beside the others
    };
    Kind m_kind = Kind::kText;
    std::string m_name;                   // by which scripts and code know it
    std::string m_label;                  // what people read
    std::string m_value;                  // proposed, then answered
    std::vector<std::string> m_choices;   // of kChoice and kTicks, heads of kTable
    int m_least = 0, m_most = 100;        // of kSlider
    std::vector<std::string> m_heads{};   // of kTicks with cells

    bool IsAnswered() const { return m_kind < Kind::kNote; }
};

/// A dialog: fields from top to bottom, a view that shows what they would give, buttons below.
struct DialogForm {
    std::string m_name;                       // by which scripts know it
    std::string m_title;
    std::vector<DialogField> m_fields;
    std::vector<std::string> m_buttons{"确定", "取消"};  // the first is the default one, the last cancels
    CView* m_preview = nullptr;               // borrowed, not created yet; the dialog makes it and takes it down. May be null
    int m_previewWidth = 420, m_previewHeight = 320;  // pixels
    /// Called before the dialog shows and after each change of a value; it may set other fields' values, notes, and
    /// invalidate the preview. What it gives is what is wrong with the values, shown; empty: nothing. With something
    /// wrong only the last button works.
    std::function<std::string(DialogForm&)> m_check;

    /// The value of a field; empty for a name that is none.
    std::string Value(const std::string& name) const {
        for (const DialogField& field : m_fields)
            if (field.m_name == name) return field.m_value;
        return {};
    }
    void SetValue(const std::string& name, std::string value) {
        for (DialogField& field : m_fields)
            if (field.m_name == name) field.m_value = value;
    }
};

/// What was answered: the values that were given and the button. A script lays such answers ready.
struct DialogAnswer {
    std::string m_dialog;  // name of the form
    int m_button = 0;      // index; -1: the last one, which cancels
    std::vector<std::pair<std::string, std::string>> m_values;  // fields by name
};

/// Asks for the path of a file.
struct PathRequest {
    bool m_save = false;         // to write it, else to read
    std::string m_title;
    std::string m_description;   // of the kind of file
    std::string m_pattern;       // "*.tvo *.dxf"
    std::string m_proposed;      // name or path
};
