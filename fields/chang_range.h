// CChangRange: four ranges of numbers that a host keeps between sessions.
#pragma once

/// Bounds of a range.
struct CChangBounds {
    double m_dMax, m_dMin;
};

/// A flag and four ranges, in a small file under G_strWorkPath that bears the version it was written by:
/// three numbers, compared as a * 10000 + b * 100 + c.
class CChangRange {
public:
    CChangRange() { Set_Default_Value(); }
    CChangRange(const CChangRange&) = default;
    CChangRange& operator=(const CChangRange&) = default;
    virtual ~CChangRange() = default;

    void Set_Default_Value();
    void CopyData(const CChangRange& other) { *this = other; }

    /// 1 when the file was read. 0 when there is none or it is not whole, with everything as before; 0 with
    /// m_nFlag 0 for a file of a later version than the caller's.
    int Read_Binary(const char* name, int a, int b, int c);
    /// Writes nothing if the file can't be opened.
    void Write_Binary(const char* name, int a, int b, int c) const;

    int m_nFlag = 0;
    CChangBounds m_aRange[4];
};
