#include "geometry/matrix.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace {

constexpr const char* kOutside = "数组下标越界！";
constexpr const char* kNoMemory = "CMatrix::CMatrix, not enough memory!";
constexpr const char* kBadSizes = "错误行列数";
constexpr double kMostRowsSquared = 1e8;

[[noreturn]] void Fail(const char* message, int line = __builtin_LINE()) {
    throw CAXE_Exception("Matrix", line, message);
}

/// Elements of a matrix of those sizes.
std::size_t CountOf(int rows, int cols) {
    return rows > 0 && cols > 0 ? static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols) : 0;
}

using Elements = std::unique_ptr<double[]>;

/// Zeros, or null for none. Throws `message` when there is no memory.
Elements MakeElements(int rows, int cols, const char* message, int line = __builtin_LINE()) {
    const std::size_t count = CountOf(rows, cols);
    if (count == 0) return nullptr;
    try {
        return std::make_unique<double[]>(count);
    } catch (const std::bad_alloc&) {
        Fail(message, line);
    }
}

/// A size after n more; a sum that no int holds is one that no memory holds.
int Extended(int size, int n) {
    if (n > std::numeric_limits<int>::max() - std::max(size, 0)) Fail(kNoMemory);
    return size + n;
}

bool IsInside(const CMatrix& m, int row, int col) {
    return m.m_pData && row >= 1 && row <= m.m_nNumRow && col >= 1 && col <= m.m_nNumCol;
}

/// Throws, as reading element after element would, unless the matrix has all of these; where there are none
/// it needn't.
void RequireElements(const CMatrix& m, int rows, int cols, int line = __builtin_LINE()) {
    if (CountOf(rows, cols) > 0 && !IsInside(m, rows, cols)) Fail(kOutside, line);
}

template <class Operate>
void EachElement(CMatrix& result, const CMatrix& a, const CMatrix& b, Operate operate) {
    RequireElements(a, a.m_nNumRow, a.m_nNumCol);
    RequireElements(b, a.m_nNumRow, a.m_nNumCol);
    for (int i = 1; i <= a.m_nNumRow; ++i)
        for (int j = 1; j <= a.m_nNumCol; ++j) result(i, j) = operate(a(i, j), b(i, j));
}

bool ReadWord(std::FILE* file, std::int32_t& value) { return std::fread(&value, sizeof value, 1, file) == 1; }

}  // namespace

// --- CMatrix ----------------------------------------------------------------------------------------------

CMatrix::CMatrix(int rows, int cols)
    : m_pData(MakeElements(rows, cols, kNoMemory).release()), m_nNumRow(rows), m_nNumCol(cols) {}

CMatrix::CMatrix(const CMatrix& other) { CopyData(other); }

CMatrix& CMatrix::operator=(const CMatrix& other) {
    CopyData(other);
    return *this;
}

void CMatrix::CopyData(const CMatrix& other) {
    if (this == &other) return;
    Elements data;
    if (other.m_pData) {
        data = MakeElements(other.m_nNumRow, other.m_nNumCol, kNoMemory);
        std::copy_n(other.m_pData, CountOf(other.m_nNumRow, other.m_nNumCol), data.get());
    }
    delete[] m_pData;
    m_pData = data.release();
    m_nNumRow = other.m_nNumRow;
    m_nNumCol = other.m_nNumCol;
}

void CMatrix::DestroyData() {
    delete[] m_pData;
    m_pData = nullptr;
    m_nNumRow = m_nNumCol = 0;
}

double& CMatrix::__getAt(int row, int col) {
    if (!IsInside(*this, row, col)) Fail(kOutside);
    return m_pData[CountOf(row - 1, m_nNumCol) + static_cast<std::size_t>(col - 1)];
}

void CMatrix::ReDimension(int rows, int cols) {
    DestroyData();
    m_pData = MakeElements(rows, cols, "CMatrix::ReDimension错误").release();
    m_nNumRow = rows;
    m_nNumCol = cols;
}

void CMatrix::RowExtend(int n, double v) {
    if (n <= 0) return;
    const int rows = Extended(m_nNumRow, n);
    Elements data = MakeElements(rows, m_nNumCol, kNoMemory);
    const std::size_t old = m_pData ? CountOf(m_nNumRow, m_nNumCol) : 0, all = CountOf(rows, m_nNumCol);
    if (old > 0) std::copy_n(m_pData, old, data.get());
    if (all > old) std::fill_n(data.get() + old, all - old, v);
    delete[] m_pData;
    m_pData = data.release();
    m_nNumRow = rows;
}

void CMatrix::ColExtend(int n, double v) {
    if (n <= 0) return;
    const int cols = Extended(m_nNumCol, n);
    Elements data = MakeElements(m_nNumRow, cols, kNoMemory);
    for (int i = 0; data && i < m_nNumRow; ++i) {
        double* const row = data.get() + CountOf(i, cols);
        const int old = m_pData ? m_nNumCol : 0;
        if (old > 0) std::copy_n(m_pData + CountOf(i, m_nNumCol), old, row);
        std::fill(row + old, row + cols, v);
    }
    delete[] m_pData;
    m_pData = data.release();
    m_nNumCol = cols;
}

void CMatrix::DeleteRow(int row) {
    if (row < 1 || row > m_nNumRow) Fail(kOutside);
    Elements data;
    if (m_pData) {
        data = MakeElements(m_nNumRow - 1, m_nNumCol, "CMatrix::DeleteRow:: not enough memory!");
        const std::size_t before = CountOf(row - 1, m_nNumCol), width = CountOf(1, m_nNumCol);
        const std::size_t all = CountOf(m_nNumRow, m_nNumCol);
        if (data) {
            std::copy_n(m_pData, before, data.get());
            std::copy_n(m_pData + before + width, all - before - width, data.get() + before);
        }
    }
    delete[] m_pData;
    m_pData = data.release();
    --m_nNumRow;
}

void CMatrix::GetRow(int row, double*& out) {
    if (row < 1 || row > m_nNumRow) Fail(kOutside);
    const std::size_t width = m_pData ? CountOf(1, m_nNumCol) : 0;
    double* const copy = new (std::nothrow) double[std::max<std::size_t>(width, 1)];  // the caller's
    if (!copy) Fail("CMatrix::GetRow():: not enough memory!");
    if (width > 0) std::copy_n(m_pData + CountOf(row - 1, m_nNumCol), width, copy);
    out = copy;
}

// --- files ------------------------------------------------------------------------------------------------

void CMatrix::Write_Binary(std::FILE* file) const {
    const std::int32_t sizes[] = {m_nNumRow, m_nNumCol};
    std::fwrite(sizes, sizeof sizes[0], 2, file);
    if (m_pData) std::fwrite(m_pData, sizeof *m_pData, CountOf(m_nNumRow, m_nNumCol), file);
}

void CMatrix::Read_Binary(std::FILE* file) {
    DestroyData();
    const bool told = ReadWord(file, m_nNumRow) && ReadWord(file, m_nNumCol);
    const double rows = m_nNumRow, cols = m_nNumCol;
    // The rows are squared where the number of elements might be expected: meant, files are told from rubbish
    // by it.
    if (!told || rows * cols < 0 || rows * rows > kMostRowsSquared || (rows < 0 && cols < 0)) Fail(kBadSizes);

    const std::size_t count = CountOf(m_nNumRow, m_nNumCol);
    const int readRows = m_nNumRow, readCols = m_nNumCol;
    constexpr std::size_t kPiece = std::size_t{1} << 16;  // elements
    std::vector<double> elements;
    try {
        while (elements.size() < count) {
            const std::size_t have = elements.size(), piece = std::min(kPiece, count - have);
            elements.resize(have + piece);
            if (std::fread(elements.data() + have, sizeof(double), piece, file) != piece) Fail(kBadSizes);
        }
    } catch (const std::bad_alloc&) {
        Fail("CMatrix::ReDimension错误");
    }
    ReDimension(readRows, readCols);
    std::copy(elements.begin(), elements.end(), m_pData);
}

void CMatrix::Display(std::FILE* file) const {
    std::fprintf(file, "%d x %d\n", m_nNumRow, m_nNumCol);
    for (int i = 1; m_pData && i <= m_nNumRow; ++i) {
        for (int j = 1; j <= m_nNumCol; ++j) std::fprintf(file, "%s%.9g", j == 1 ? "" : " ", (*this)(i, j));
        std::fputc('\n', file);
    }
}

void CMatrix::Display(const char* title) const {
    std::fprintf(stdout, "%s ", title ? title : "");
    Display(stdout);
}

// --- CVector ----------------------------------------------------------------------------------------------

CVector::CVector(int n, double v) : CMatrix(1, n) {
    if (m_pData) std::fill_n(m_pData, n, v);
}

// --- operators --------------------------------------------------------------------------------------------

CMatrix operator+(const CMatrix& a, const CMatrix& b) {
    CMatrix sum(a.m_nNumRow, a.m_nNumCol);
    EachElement(sum, a, b, [](double x, double y) { return x + y; });
    return sum;
}

CMatrix operator-(const CMatrix& a, const CMatrix& b) {
    CMatrix difference(a.m_nNumRow, a.m_nNumCol);
    EachElement(difference, a, b, [](double x, double y) { return x - y; });
    return difference;
}

CVector operator+(const CVector& a, const CVector& b) {
    CVector sum(a);
    EachElement(sum, a, b, [](double x, double y) { return x + y; });
    return sum;
}

CVector operator-(const CVector& a, const CVector& b) {
    CVector difference(a);
    EachElement(difference, a, b, [](double x, double y) { return x - y; });
    return difference;
}

// Row by row of the right operand, which runs through memory in order; each element still sums its products
// from the first to the last.
CMatrix operator*(const CMatrix& a, const CMatrix& b) {
    CMatrix product(a.m_nNumRow, b.m_nNumCol);
    const int inner = a.m_nNumCol;
    if (!product.m_pData || inner <= 0) return product;
    RequireElements(a, a.m_nNumRow, inner);
    RequireElements(b, inner, b.m_nNumCol);
    for (int i = 0; i < a.m_nNumRow; ++i) {
        double* const out = product.m_pData + CountOf(i, b.m_nNumCol);
        for (int k = 0; k < inner; ++k) {
            const double factor = a.m_pData[CountOf(i, inner) + static_cast<std::size_t>(k)];
            const double* const row = b.m_pData + CountOf(k, b.m_nNumCol);
            for (int j = 0; j < b.m_nNumCol; ++j) out[j] += factor * row[j];
        }
    }
    return product;
}

// --- rows and vectors -------------------------------------------------------------------------------------

CVector GetVectorByRow(const CMatrix& m, int row) {
    if (row < 1 || row > m.m_nNumRow) Fail("取向量时下裱越界");
    RequireElements(m, row, m.m_nNumCol);
    CVector vector;
    try {
        vector.SetLength(m.m_nNumCol);
    } catch (const CAXE_Exception&) {
        Fail("GetVectorByRow::not enough memory!");
    }
    for (int j = 1; j <= m.m_nNumCol; ++j) vector[j] = m(row, j);
    return vector;
}

void MatrixAppendRow(CMatrix& m, const CVector& row) {
    const bool first = m.m_nNumRow == 0 && m.m_nNumCol == 0;
    if (!first && row.GetLength() != m.m_nNumCol) Fail("SetVector列数错误！");
    const CVector values = row;  // the vector may be the matrix itself
    try {
        if (first) m.ReDimension(1, values.GetLength());
        else m.RowExtend(1, 0);
    } catch (const CAXE_Exception&) {
        Fail("MatrixAppendRow()::not enough memory!");
    }
    SetVector(m, values, m.m_nNumRow);
}

CMatrix MatrixAppendMatrix(const CMatrix& above, const CMatrix& below) {
    if (above.m_nNumRow == 0 && above.m_nNumCol == 0) return below;
    RequireElements(below, below.m_nNumRow, above.m_nNumCol);
    CMatrix result = above;
    result.RowExtend(below.m_nNumRow, 0);
    for (int i = 1; i <= below.m_nNumRow; ++i)
        for (int j = 1; j <= above.m_nNumCol; ++j) result(above.m_nNumRow + i, j) = below(i, j);
    return result;
}

namespace {

void RequireRow(const CMatrix& m, int row, int length, int line = __builtin_LINE()) {
    if (row < 1 || row > m.m_nNumRow) Fail("SetVector行号错误！", line);
    if (length != m.m_nNumCol) Fail("SetVector列数错误！", line);
}

}  // namespace

void SetVector(CMatrix& m, const CVector& values, int row) {
    RequireRow(m, row, values.GetLength());
    for (int j = 1; j <= m.m_nNumCol; ++j) m(row, j) = values[j];
}

void SetVector(CMatrix& m, const CArray<float, float>& values, int row) {
    RequireRow(m, row, values.GetSize());
    for (int j = 1; j <= m.m_nNumCol; ++j) m(row, j) = static_cast<double>(values[j - 1]);
}

CVector ConvertFromFloatArray(const CArray<float, float>& values) {
    CVector vector(values.GetSize(), 0);
    for (int i = 0; i < values.GetSize(); ++i) vector[i + 1] = static_cast<double>(values[i]);
    return vector;
}

CVector ToVector(const CMatrix& m) {
    CVector vector;
    if (m.m_nNumCol == 1) {
        vector.SetLength(m.m_nNumRow);
        for (int i = 1; i <= m.m_nNumRow; ++i) vector[i] = m(i, 1);
    } else if (m.m_nNumRow == 1) {
        vector.SetLength(m.m_nNumCol);
        for (int j = 1; j <= m.m_nNumCol; ++j) vector[j] = m(1, j);
    }
    return vector;
}

CMatrix ToColVector(const CVector& v) {
    CMatrix column(v.GetLength(), 1);
    for (int i = 1; i <= v.GetLength(); ++i) column(i, 1) = v[i];
    return column;
}

int IsZeroVector(const CVector& v) {
    for (int i = 1; i <= v.GetLength(); ++i)
        if (std::fabs(v[i]) > 1e-5) return 0;
    return 1;
}

void DisplayVector(const CVector& v, const char* title) { v.Display(title); }
