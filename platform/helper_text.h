// Units of a text that are set apart by ";", as in "3600*5;6600*5;9000*2".
#pragma once

constexpr int kUnitBytes = 63;

/// Hands out the next unit of `text` at *position, white space at its ends removed, and moves *position
/// behind it. `unit` must hold 64 bytes; a longer unit is cut at a whole character. Units that hold nothing
/// are passed over, so an empty one is the end of the text, and 0 is returned, else 1. *position is 0 at
/// the start and the function's own from then on.
int read_one_unit_from_string(char* unit, const char* text, int* position);
