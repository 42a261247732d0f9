// CMatrix and CVector: small dense linear algebra for hosts, and the one exception of the library.
#pragma once
#include <cstdio>

#include "platform/containers.h"
#include "platform/string.h"

/// What the matrix code throws, by value: where, and what. The caller decides what to show.
class CAXE_Exception {
public:
    CAXE_Exception(const char* file, int line, const char* message)
        : m_strFile(file), m_nLine(line), m_strMessage(message) {}

    CString GetFileName() const { return m_strFile; }
    int GetLine() const { return m_nLine; }
    /// "__UNKNOWN__" when there is no message.
    CString GetExceptionMessage() const {
        return m_strMessage.IsEmpty() ? CString("__UNKNOWN__") : m_strMessage;
    }

private:
    CString m_strFile;  // name of the source, "Matrix"
    int m_nLine;
    CString m_strMessage;
};

/// A matrix of doubles. Rows and columns count from 1. Whatever fails throws a CAXE_Exception, memory that
/// runs out too, and leaves the matrix as it was, but for ReDimension and Read_Binary, which leave one
/// without elements. A size that is not above 0 makes a matrix without elements.
class CMatrix {
public:
    CMatrix() = default;          // 0 by 0
    CMatrix(int rows, int cols);  // zeros
    CMatrix(const CMatrix& other);
    CMatrix& operator=(const CMatrix& other);
    virtual ~CMatrix() { DestroyData(); }

    void CopyData(const CMatrix& other);
    void DestroyData();  // frees the data; the sizes become 0

    // Outside the bounds these throw "数组下标越界！".
    double& operator()(int row, int col) { return __getAt(row, col); }
    double operator()(int row, int col) const { return const_cast<CMatrix*>(this)->__getAt(row, col); }
    double& __getAt(int row, int col);

    int GetNumRow() const { return m_nNumRow; }
    int GetNumCol() const { return m_nNumCol; }

    /// Sets both sizes, also when there is no element then; the elements are zeros, the old ones are gone.
    void ReDimension(int rows, int cols);
    void RowExtend(int n, double v);  // adds n rows of v at the bottom
    void ColExtend(int n, double v);  // adds n columns of v at the right
    void DeleteRow(int row);          // the rest close up
    /// A copy of the row, made by new[]; the caller owns it.
    void GetRow(int row, double*& out);

    /// Rows and columns as 32-bit ints, then the elements row by row.
    void Write_Binary(std::FILE* file) const;
    /// The sizes stand in the object before anything is checked. Throws "错误行列数" when they have a
    /// negative product or the square of the rows is above 1e8, whatever the columns, and when the file ends
    /// before they do. Memory grows with what is read, not with what the sizes claim.
    void Read_Binary(std::FILE* file);

    // For looking at; the format may change.
    void Display(const char* title) const;  // on the standard output
    void Display(std::FILE* file) const;
    void DisplayMatrixElement(const CMatrix& m) const { m.Display(""); }

    double* m_pData = nullptr;  // owned, row by row; null when empty
    int m_nNumRow = 0;
    int m_nNumCol = 0;
};

/// A matrix of one row.
class CVector : public CMatrix {
public:
    CVector() = default;
    CVector(const CVector&) = default;
    CVector& operator=(const CVector&) = default;
    CVector(int n, double v);

    void SetLength(int n) { ReDimension(1, n); }
    int GetLength() const { return m_nNumCol; }
    double& operator[](int i) { return __getAt(1, i); }
    double operator[](int i) const { return (*this)(1, i); }
};

// Element by element, with the size of the left operand. Sizes are not compared first: an element that the
// right one lacks throws, and what it has beyond is not looked at.
CMatrix operator+(const CMatrix& a, const CMatrix& b);
CMatrix operator-(const CMatrix& a, const CMatrix& b);
CVector operator+(const CVector& a, const CVector& b);
CVector operator-(const CVector& a, const CVector& b);
/// Rows of the left by columns of the right, summing over the left's columns.
CMatrix operator*(const CMatrix& a, const CMatrix& b);

CVector GetVectorByRow(const CMatrix& m, int row);
/// As a new last row; the first row of a 0 by 0 matrix gives it its columns. Another length than the columns
/// throws as SetVector does.
void MatrixAppendRow(CMatrix& m, const CVector& row);
/// The columns are those of the first, or of the second when the first is 0 by 0; sizes are not compared, as
/// above.
CMatrix MatrixAppendMatrix(const CMatrix& above, const CMatrix& below);
// Throw "SetVector行号错误！" for a row outside the matrix, "SetVector列数错误！" for a length other than its
// columns.
void SetVector(CMatrix& m, const CVector& values, int row);
void SetVector(CMatrix& m, const CArray<float, float>& values, int row);
CVector ConvertFromFloatArray(const CArray<float, float>& values);
/// Its one column or its one row; empty when it has more of both.
CVector ToVector(const CMatrix& m);
CMatrix ToColVector(const CVector& v);
/// No element's magnitude is above 1e-5.
int IsZeroVector(const CVector& v);
void DisplayVector(const CVector& v, const char* title);
