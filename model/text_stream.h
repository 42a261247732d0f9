// Words, lines and numbers of text files.
//
// The bytes of a line are handed out as the file holds them: GBK. Whoever shows them calls GbkToUtf8. The
// byte 0xFF ends a word or line as the end of the stream does, so that a text holding that byte is cut
// there: files written so far rely on it.
#pragma once
#include <cstdio>

/// Reads bytes into `out` until the end of the stream, the byte 0xFF, `max` bytes, `sep` or a newline, and
/// ends `out` with 0: it must hold max + 1 bytes. The stopping byte is consumed, but a newline stays to be
/// read when `keepNewline` is nonzero. Returns `out`.
char* get_word(std::FILE* f, char sep, char* out, int max, int keepNewline);

/// Reads a line in the same way, the newline consumed. Null only when nothing was read and no newline
/// either; an empty line is an empty text.
char* get_line(std::FILE* f, char* out, int max);

/// Reads the line that ends at the stream's position, and leaves the stream in front of the newline that
/// stands before it, or at the start of the file. Null as get_line.
char* get_line_back_ward(std::FILE* f, char* out, int max);

/// Reads a number at `s`: white space, a sign, a run of digits and points, white space, one byte of `seps`,
/// white space. Returns the position behind; without digit or point that is one byte on, but never past the
/// terminator, so that a loop over a line ends. Null for a null or empty `s`, with `value` as it was.
char* get_number(const char* s, float& value, const char* seps);

/// Reads lines of up to 500 bytes until one holds `text` (UTF-8, sought as GBK), from the start of the file
/// if `fromStart`. 1 when found, the stream behind the line, or at its start if `stayOnLine`. 0 when not,
/// the stream at its end.
int find_text(std::FILE* f, const char* text, int fromStart, int stayOnLine);

/// The same from the current position. 1 when found, the stream at the start of the line, or behind it if
/// `afterLine`. 0 when not, the stream where it was.
int FindTextA(std::FILE* f, const char* text, int afterLine);

/// Fills `buffer` (of `size` bytes, terminator included) with the next line that does not begin with
/// `marker`, its newline kept, returns dropped. At the end of the file the buffer stays as it is. What
/// does not fit is left for the next call.
void fgets_skip_comment(char* buffer, int size, std::FILE* f, const char* marker);
