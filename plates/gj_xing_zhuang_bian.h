// CGjXingZhuangBian: a shape side of a plate.
#pragma once
#include <cstdio>

#include "plates/jain_tu_ban_bian.h"
#include "platform/containers.h"

/// A run of border lines that together form one straight side or one arc.
class CGjXingZhuangBian {
public:
    CGjXingZhuangBian() = default;
    CGjXingZhuangBian(const CGjXingZhuangBian&) = default;
    CGjXingZhuangBian& operator=(const CGjXingZhuangBian&) = default;
    CGjXingZhuangBian(CGjXingZhuangBian&&) noexcept = default;
    CGjXingZhuangBian& operator=(CGjXingZhuangBian&&) noexcept = default;
    virtual ~CGjXingZhuangBian() = default;
    void CopyData(const CGjXingZhuangBian& other) { *this = other; }

    // Text and binary form. Counts below 0 or over kMostParts are refused with 0, as is a file that ends. Lines that
    // a text names and that are not there are passed over in silence; the binary reader stops at the first and
    // gives 0. The writers give 0 when a part could not be written, that of the text also when one names no live line.
    int SaveData(std::FILE* file);
    int LoadData(std::FILE* file);
    int WriteBinary(std::FILE* file);
    int ReadBinary(std::FILE* file);

    static constexpr int kMostParts = 100'000;  // sides of a plate, or lines of a side, that a reader believes

    int m_nIndex = 0;                   // number within the plate, from 1
    int m_nBian = 0;                    // number of lines, equal to the array's size
    CArray<CJainTuBanBian> m_arrBian;   // in walk order
};
