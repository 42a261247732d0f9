// Numbered errors that are told to the user.
#pragma once

using ErrorHandler = void (*)(int code, const char* text);

/// Hands the error to the handler in force and returns: the caller goes on.
void tell_error(int code, const char* text);

/// Replaces the handler (null: the first one: a message of the window system, or without one a line on stderr); returns the one before.
ErrorHandler SetErrorHandler(ErrorHandler handler);
