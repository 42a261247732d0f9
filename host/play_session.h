// A session at the editor's view, event by event.
#pragma once
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/script.h"
#include "host/script_line.h"
#include "platform/window_system.h"

class CEditFrame;
class CTvoFrameBase;
class CTvoViewMgr;

/// A frame with a view and a prompt on a window system without a screen, and somebody's hands: mouse, keys, typed text.
/// What `tvo run` knows works here too, on the same model.
class PlaySession {
public:
    /// On a window system of the caller's, which goes last; null: on one without a screen.
    explicit PlaySession(std::ostream& out, CWindowSystem* system = nullptr);
    ~PlaySession();

    /// Does what one line says. Throws ScriptFailure when it makes no sense.
    void Run(std::string_view line);
    /// The events with their arguments, for people.
    static std::string Help();

    CTvoViewMgr& View();
    CTvoFrameBase& Frame() { return *m_frame; }
    /// The whole editor in the place of the frame with view and prompt alone. Throws ScriptFailure behind other events.
    void UseEditor(int width, int height, const std::string& file);
    CEditFrame& Editor();  // throws ScriptFailure when the session has none
    void Resize(int width, int height);  // of the view, pixels; of the window with the whole editor
    void Mouse(unsigned message, int x, int y);
    void Key(unsigned key, bool shift, bool control, const std::string& text);
    /// The file that a word of a script names: "@K/NAME" lies among those of a recording. Throws ScriptFailure.
    std::string FileNamed(const std::string& word) const;

private:
    std::unique_ptr<CWindowSystem> m_ownSystem;  // null on the caller's

public:
    CWindowSystem& m_system;
    Script m_script;
    std::ostream& m_out;               // borrowed
    int m_x = 0, m_y = 0;              // the pointer, pixels of the view
    std::string m_folder;              // of the script; empty: the working one
    std::string m_copies, m_played;    // folders of a recording's files and of what is made of them; see FileNamed
    std::string m_record;              // where the session is written down once the editor stands; empty: nowhere
    unsigned m_held = 0;               // MK_SHIFT and MK_CONTROL that go with the pointer's events

private:
    bool PlayOne(std::string_view line);  // false for a line that says nothing
    bool Play(std::string_view line);
    void Asked();
    void TellMessages();

    std::unique_ptr<CTvoFrameBase> m_frame;
    CEditFrame* m_editor = nullptr;  // the frame, if it is the whole editor
    bool m_started = false;          // an event has been played
    std::size_t m_told = 0;          // messages that have been told
    struct Later {
        int question;
        std::string line;
    };
    std::vector<Later> m_meanwhile;      // what happens while the next event's questions stand
    bool m_prepares = false;             // the line belongs to the next event
    int m_asked = 0;                     // questions of the event that is being played
    std::optional<ScriptFailure> m_wrong;  // with a line that was played meanwhile
};
