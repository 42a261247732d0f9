#include "platform/errors.h"

#include <cstdio>
#include <string>
#include <utility>

#include "platform/window_system.h"

namespace {

/// A message on the screen; without one a line on stderr.
void Tell(int code, const char* text) {
    if (CWindowSystem* system = CWindowSystem::Current()) system->ShowMessage(text);
    else std::fprintf(stderr, "error %d: %s\n", code, text);
}

ErrorHandler g_handler = Tell;

}  // namespace

void tell_error(int code, const char* text) { g_handler(code, text ? text : ""); }

ErrorHandler SetErrorHandler(ErrorHandler handler) {
    return std::exchange(g_handler, handler ? handler : Tell);
}
