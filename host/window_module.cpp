#include "host/window_module.h"

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "host/failure.h"

namespace {

namespace fs = std::filesystem;

bool IsSet(const char* variable) {
    const char* const value = std::getenv(variable);
    return value && *value;
}

void RequireDisplay() {
    if (IsSet("DISPLAY") || IsSet("WAYLAND_DISPLAY") || IsSet("QT_QPA_PLATFORM")) return;
    throw DataFailure(
        "there is no display for the editor's window: neither DISPLAY nor WAYLAND_DISPLAY is set. "
        "Start it from a desktop, or with 'xvfb-run tvo edit', or work without a screen: tvo play, tvo run");
}

/// Beside the program as it is built, or where it was installed. Empty: it is in neither place.
fs::path FindModule() {
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    if (error) return {};
    const fs::path folder = program.parent_path();
    for (const fs::path& place : {folder / kTvoQtModule, folder / TVO_MODULES / kTvoQtModule})
        if (fs::exists(place, error)) return place;
    return {};
}

// The module stays open to the end: what it has registered with its toolkit points into it.
TvoMakeWindowSystem* OpenModule() {
    const fs::path place = FindModule();
    if (place.empty())
        throw DataFailure(std::string("the editor's window is not installed: ") + kTvoQtModule +
                          " is missing. It is built when Qt 6 Widgets (package qt6-base-dev) is there");
    void* const module = ::dlopen(place.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!module) throw DataFailure(std::string("the editor's window cannot be opened: ") + ::dlerror());
    auto* const make = reinterpret_cast<TvoMakeWindowSystem*>(::dlsym(module, kTvoMakeWindowSystem));
    if (!make) throw DataFailure(place.string() + " is of another version of tvo");
    return make;
}

}  // namespace

WindowModule::WindowModule(const TvoQtOptions& options) {
    TvoMakeWindowSystem* const make = OpenModule();
    RequireDisplay();
    m_system.reset(make(&m_count, m_arguments, &options));
}
