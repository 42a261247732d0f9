// Arrays of plain values: copying, sorting, key values, text form.
#pragma once
#include <cstdio>

#include "geometry/region_measures.h"  // RemoveDuplicatePoint, Add_Into_Array
#include "platform/containers.h"
#include "platform/string.h"

// --- copying: (from, to) ----------------------------------------------------------------------------------

void CopyByteArray(const CByteArray& from, CByteArray& to);
void CopyDwordArray(const CDWordArray& from, CDWordArray& to);
void CopyIntArray(const CArray<int, int>& from, CArray<int, int>& to);
void CopyFloatArray(const CArray<float, float>& from, CArray<float, float>& to);
void CopyFPointArray(const CArray<CFPoint, CFPoint>& from, CArray<CFPoint, CFPoint>& to);
void CopyDoubleArray(const CArray<double, double>& from, CArray<double, double>& to);
void CopyStringArray(const CStringArray& from, CStringArray& to);

// --- values -----------------------------------------------------------------------------------------------

void ResetFloatArray(CArray<float, float>* a, int size, float value);

/// 0, and nothing set, for an empty array. The mean is worked in the element type.
int get_array_key_value(const CArray<float, float>& a, float& min, float& max, float& mean);
int get_array_key_value(const CArray<double, double>& a, double& min, double& max, double& mean);

/// Ascending, each value once by exact comparison. NaNs, which equal nothing, all stay, at the end.
void DeleteDuplicateValue(CArray<int, int>& a);
void DeleteDuplicateValue(CArray<float, float>& a);
void DeleteDuplicateValue(CArray<double, double>& a);

/// Ascending by x for axis 'x' or 'X', else by y. Which of several points with one key comes first is what
/// an exchange sort makes of it: each element in turn compared with every later one and swapped when
/// strictly greater. A NaN key stays in its place and the others sort around it.
void SortFloatPointArray(CArray<CFPoint, CFPoint>& points, char axis);

// --- text form --------------------------------------------------------------------------------------------

/// The size and a comma, then the values as "%.5f" with `sep` between them; then `sep` if `endSep` and a
/// newline if `newline`. The comma behind the size stays one whatever `sep` is, so only a comma reads back.
void WriteFloatArray(const CArray<float, float>* a, std::FILE* f, int endSep, char sep, int newline);
/// Empties the array, then reads that form; `keepNewline` as get_word. Returns how many there
/// were: the count that stands in the file, or fewer if the file or a kept line ends before.
int ReadFloatArray(CArray<float, float>* a, std::FILE* f, char sep, int keepNewline);
