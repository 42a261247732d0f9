#include "platform/window.h"

#include <utility>

namespace {
HCURSOR g_cursor = 0;
}

HCURSOR SetCursor(HCURSOR cursor) { return std::exchange(g_cursor, cursor); }
HCURSOR GetCursor() { return g_cursor; }
