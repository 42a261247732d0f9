#include "platform/file_dialog.h"

#include <cstring>
#include <optional>
#include <string>
#include <utility>

#include "platform/window_system.h"

namespace {

SaveFileDialog& Dialog() {
    static SaveFileDialog dialog;
    return dialog;
}

/// The dialog of the window system, for the first pair of description and pattern.
BOOL AskSystem(OPENFILENAME& request) {
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system || !request.lpstrFile || request.nMaxFile == 0) return FALSE;
    PathRequest ask;
    ask.m_save = true;
    ask.m_proposed = request.lpstrFile;
    if (request.lpstrFilter) {
        ask.m_description = request.lpstrFilter;
        if (!ask.m_description.empty()) ask.m_pattern = request.lpstrFilter + ask.m_description.size() + 1;
    }
    const std::optional<std::string> path = system->AskPath(ask);
    if (!path || path->size() >= request.nMaxFile) return FALSE;
    std::memcpy(request.lpstrFile, path->c_str(), path->size() + 1);
    return TRUE;
}

}  // namespace

BOOL GetSaveFileNameA(OPENFILENAME* request) {
    if (!request) return FALSE;
    return Dialog() ? Dialog()(*request) : AskSystem(*request);
}

SaveFileDialog SetSaveFileDialog(SaveFileDialog dialog) { return std::exchange(Dialog(), std::move(dialog)); }
