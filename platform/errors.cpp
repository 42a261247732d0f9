#include "platform/errors.h"

#include <cstdio>
#include <utility>

namespace {

void WriteToStderr(int code, const char* text) { std::fprintf(stderr, "error %d: %s\n", code, text); }

ErrorHandler g_handler = WriteToStderr;

}  // namespace

void tell_error(int code, const char* text) { g_handler(code, text ? text : ""); }

ErrorHandler SetErrorHandler(ErrorHandler handler) {
    return std::exchange(g_handler, handler ? handler : WriteToStderr);
}
