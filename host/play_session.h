// A session at the editor's view, event by event.
#pragma once
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

#include "host/script.h"
#include "platform/window_system.h"

class CPlayFrame;
class CTvoViewMgr;

/// A frame with a view and a prompt on a window system without a screen, and somebody's hands: mouse, keys, typed text.
/// What `tvo run` knows works here too, on the same model.
class PlaySession {
public:
    explicit PlaySession(std::ostream& out);
    ~PlaySession();

    /// Does what one line says. Throws ScriptFailure when it makes no sense.
    void Run(std::string_view line);
    /// The events with their arguments, for people.
    static std::string Help();

    CTvoViewMgr& View();
    CPlayFrame& Frame() { return *m_frame; }
    void Resize(int width, int height);  // of the view, pixels
    void Mouse(unsigned message, int x, int y);
    void Key(unsigned key, bool shift, bool control, const std::string& text);

    CWindowSystem m_system;
    Script m_script;
    std::ostream& m_out;               // borrowed
    int m_x = 0, m_y = 0;              // the pointer, pixels of the view

private:
    std::unique_ptr<CPlayFrame> m_frame;
};
