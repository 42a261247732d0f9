// Binary records of files: little-endian, unaligned, texts as GBK.
//
//   string        32-bit signed length, then that many bytes, no terminator
//   arrays        32-bit count, then the elements: strings, 32-bit integers, 32-bit floats,
//                 points as x and y, the vertices of a region as x, y and c
//
// A reader empties its array first and stops at the first short read, with what it got so far. It never
// takes memory for more than the file holds, whatever a count says.
#pragma once
#include <cstdint>
#include <cstdio>

#include "platform/containers.h"
#include "platform/string.h"

class CFPoint;
class CFRegion;

void write_string(std::FILE* f, const CString& text);
/// Empty when the length is 0 or less, or the bytes are not all there.
CString read_string(std::FILE* f);

int write_string_array(std::FILE* f, const CStringArray& a);  // 1
void write_int_array(std::FILE* f, const CArray<int, int>& a);
void write_dword_array(std::FILE* f, const CDWordArray& a);
void write_dword_array(std::FILE* f, const CArray<unsigned long, unsigned long>& a);  // low 32 bits of each

// These return the size of the array.
int read_string_array(std::FILE* f, CStringArray& a);
int read_int_array(std::FILE* f, CArray<int, int>& a);
int read_dword_array(std::FILE* f, CDWordArray& a);
int read_dword_array(std::FILE* f, CArray<unsigned long, unsigned long>& a);

void write_float_array(std::FILE* f, const CArray<float, float>& a);
void read_float_array(std::FILE* f, CArray<float, float>& a);
/// z is not stored, and 0 when read.
void write_float_point_array(std::FILE* f, const CArray<CFPoint, CFPoint>& a);
void read_float_point_array(std::FILE* f, CArray<CFPoint, CFPoint>& a);
void write_region(std::FILE* f, const CFRegion& region);
void read_region(std::FILE* f, CFRegion& region);
