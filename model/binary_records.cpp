#include "model/binary_records.h"

#include <algorithm>
#include <string>

#include "geometry/fpoint.h"
#include "geometry/fregion.h"
#include "platform/archive.h"
#include "platform/gbk.h"

namespace {

void Store(CArchive& ar, unsigned long v) { ar << static_cast<std::uint32_t>(v & 0xFFFFFFFF); }
void Store(CArchive& ar, std::uint32_t v) { ar << v; }
void Store(CArchive& ar, int v) { ar << v; }
void Store(CArchive& ar, float v) { ar << v; }
void Store(CArchive& ar, const CString& v) { ar << v; }
void Store(CArchive& ar, const CFPoint& v) { ar << v.x << v.y; }
void Store(CArchive& ar, const CFShoot& v) { ar << v.x << v.y << v.c; }

void Load(CArchive& ar, unsigned long& v) {
    std::uint32_t bits = 0;
    ar >> bits;
    v = bits;
}
void Load(CArchive& ar, std::uint32_t& v) { ar >> v; }
void Load(CArchive& ar, int& v) { ar >> v; }
void Load(CArchive& ar, float& v) { ar >> v; }
void Load(CArchive& ar, CString& v) { ar >> v; }
void Load(CArchive& ar, CFPoint& v) { ar >> v.x >> v.y; }
void Load(CArchive& ar, CFShoot& v) { ar >> v.x >> v.y >> v.c; }

template <class Array>
void WriteArray(std::FILE* f, const Array& a) {
    CArchive ar(f, CArchive::store);
    ar << a.GetSize();
    for (const auto& v : a) Store(ar, v);
}

// Element by element, so that a count takes no memory by itself.
template <class T>
int ReadArray(std::FILE* f, CArrayOf<T>& a) {
    a.RemoveAll();
    CArchive ar(f, CArchive::load);
    int count = 0;
    ar >> count;
    for (; count > 0; --count) {
        T v{};
        Load(ar, v);
        if (ar.IsShort()) break;
        a.Add(v);
    }
    return a.GetSize();
}

}  // namespace

void write_string(std::FILE* f, const CString& text) { CArchive(f, CArchive::store) << text; }
CString read_string(std::FILE* f) {
    CString text;
    CArchive(f, CArchive::load) >> text;
    return text;
}

int write_string_array(std::FILE* f, const CStringArray& a) {
    WriteArray(f, a);
    return 1;
}
void write_int_array(std::FILE* f, const CArray<int, int>& a) { WriteArray(f, a); }
void write_dword_array(std::FILE* f, const CDWordArray& a) { WriteArray(f, a); }
void write_dword_array(std::FILE* f, const CArray<unsigned long, unsigned long>& a) { WriteArray(f, a); }

int read_string_array(std::FILE* f, CStringArray& a) { return ReadArray(f, a); }
int read_int_array(std::FILE* f, CArray<int, int>& a) { return ReadArray(f, a); }
int read_dword_array(std::FILE* f, CDWordArray& a) { return ReadArray(f, a); }
int read_dword_array(std::FILE* f, CArray<unsigned long, unsigned long>& a) { return ReadArray(f, a); }

void write_float_array(std::FILE* f, const CArray<float, float>& a) { WriteArray(f, a); }
void read_float_array(std::FILE* f, CArray<float, float>& a) { ReadArray(f, a); }
void write_float_point_array(std::FILE* f, const CArray<CFPoint, CFPoint>& a) { WriteArray(f, a); }
void read_float_point_array(std::FILE* f, CArray<CFPoint, CFPoint>& a) { ReadArray(f, a); }
void write_region(std::FILE* f, const CFRegion& region) { WriteArray(f, region); }
void read_region(std::FILE* f, CFRegion& region) { ReadArray(f, region); }
