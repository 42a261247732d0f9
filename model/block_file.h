// Files of fixed blocks.
//
// A block has `count` records of `size` bytes. It begins with a header of `headerCount` records, every byte
// 0xFF; behind its data it is filled with 0. A position that stands on a boundary moves on by a whole block:
// writer and reader agree on this, and a header is never written at the position itself.
#pragma once
#include <cstdio>

/// Writes `fill` from the stream's position up to `pos`. 0, and nothing written, if `pos` lies behind it.
int Fill_To_Fixed_Pos(std::FILE* f, long pos, unsigned char fill);

/// Fills the block with 0 and writes the header of the next. Nothing for a count or size below 1.
void Fill_To_Next_Block(std::FILE* f, int count, int headerCount, int size);

/// Seeks the next block and reads its header; 1 when it is one.
int Search_NextBlock_Header(std::FILE* f, int count, int headerCount, int size);
