// The door of the module that shows windows through Qt. The program opens the module when it wants a screen,
// and looks this function up by its name; nothing else of Qt is seen outside.
#pragma once
#include <functional>
#include <optional>
#include <string>

class CWindowSystem;

/// What the module gets from its host. The host keeps the settings; the module hands questions for them over.
struct TvoQtOptions {
    std::function<std::optional<std::string>(const std::string& path, const std::string& name)> m_readSetting;
    std::function<void(const std::string& path, const std::string& name, const std::string& value)>
        m_writeSetting;
    /// Dialogs, paths, the clipboard, messages, timers and the clock are those of a system without a screen:
    /// a script is played.
    bool m_scripted = false;
    /// Told once, when the first picture of a window stands on the screen.
    std::function<void()> m_firstPicture;
    /// Told after each mouse move, press or release that has been shown: how long that took, in microseconds.
    std::function<void(bool move, long long microseconds)> m_mouseShown;
};

/// Makes the window system the current one. The count and the arguments must live as long as it does; what Qt
/// takes of them is gone afterwards. Ends the program with a message and status 1 when the display can't be
/// reached. One for the process; the caller deletes it.
using TvoMakeWindowSystem = CWindowSystem*(int* argc, char** argv, const TvoQtOptions* options);

extern "C" TvoMakeWindowSystem tvo_make_window_system;
constexpr const char* kTvoMakeWindowSystem = "tvo_make_window_system";
constexpr const char* kTvoQtModule = "libtvo_qt.so";
