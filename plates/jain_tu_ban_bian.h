// CJainTuBanBian: one net line on the border of a plate.
#pragma once
#include <cstdio>

class CGjNetLine;

/// A net line with the direction in which the border runs along it. The line is borrowed.
class CJainTuBanBian {
public:
    CJainTuBanBian() = default;
    CJainTuBanBian(const CJainTuBanBian&) = default;
    CJainTuBanBian& operator=(const CJainTuBanBian&) = default;
    virtual ~CJainTuBanBian() = default;
    void CopyData(const CJainTuBanBian& other) { *this = other; }

    /// Text: a key line and the data of the live line. When there is none, what was stored of it, and 0.
    int SaveData(std::FILE* file);
    /// Resolves the line by its identity in g_pGridDataBase. 0 for a wrong key line and when there is no such line.
    int LoadData(std::FILE* file);
    /// Three words; the number and identity as stored, not those of the live line. So the two forms disagree
    /// about the number after a renumbering. Meant.
    int WriteBinary(std::FILE* file);
    int ReadBinary(std::FILE* file);  // 0 at the end of the file and when there is no such line

    int m_nIndex = 0;      // number within its shape side, from 1
    int m_nLineNO = 0;     // display number of the net line when the side was made or read
    int m_nLineID = 0;     // its identity
    int m_nDirection = 0;  // 1: the walk runs from the line's start to its end; 0: from end to start
    CGjNetLine* m_pNetLine = nullptr;  // borrowed
};
