// The window system on the screen, in a module that is opened when it is wanted.
#pragma once
#include <memory>
#include <string>

#include "platform/qt/qt_module.h"
#include "platform/window_system.h"

/// Opens the module that shows windows and makes its window system the current one; it goes with this object.
/// Throws DataFailure, with what to do about it, when there is no module or no display.
class WindowModule {
public:
    explicit WindowModule(const TvoQtOptions& options);

    CWindowSystem& System() { return *m_system; }

private:
    std::string m_name = "tvo";  // the arguments that the toolkit gets: it keeps to them
    char* m_arguments[2] = {m_name.data(), nullptr};
    int m_count = 1;
    std::unique_ptr<CWindowSystem> m_system;
};
