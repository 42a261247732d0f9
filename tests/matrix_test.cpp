// Matrices: products and sums against plain loops, the messages of all failures, files that lie about their sizes.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <functional>
#include <random>

#include "geometry/matrix.h"

namespace {

CMatrix Random(std::mt19937& rng, int rows, int cols) {
    CMatrix m(rows, cols);
    for (int i = 1; i <= rows; ++i)
        for (int j = 1; j <= cols; ++j) m(i, j) = static_cast<double>(static_cast<int>(rng() % 2001) - 1000) / 7;
    return m;
}

/// "2x3: 1 2 3 4 5 6"
std::string Show(const CMatrix& m) {
    std::string text = std::to_string(m.GetNumRow()) + "x" + std::to_string(m.GetNumCol()) + ":";
    char number[40];
    for (int i = 1; m.m_pData && i <= m.GetNumRow(); ++i)
        for (int j = 1; j <= m.GetNumCol(); ++j) {
            std::snprintf(number, sizeof number, " %.17g", m(i, j));
            text += number;
        }
    return text;
}

CMatrix Of(int rows, int cols, std::initializer_list<double> values) {
    CMatrix m(rows, cols);
    std::copy(values.begin(), values.end(), m.m_pData);
    return m;
}

std::string MessageOf(const std::function<void()>& act) {
    try {
        act();
    } catch (const CAXE_Exception& e) {
        EXPECT_STREQ(e.GetFileName(), "Matrix");
        EXPECT_GT(e.GetLine(), 0);
        return e.GetExceptionMessage().Std();
    }
    return "none";
}

/// A file in memory with two sizes and some doubles behind them.
std::FILE* FileOf(std::int32_t rows, std::int32_t cols, int doubles) {
    std::FILE* file = std::tmpfile();
    std::fwrite(&rows, 4, 1, file);
    std::fwrite(&cols, 4, 1, file);
    for (int i = 0; i < doubles; ++i) {
        const double v = i + 0.5;
        std::fwrite(&v, 8, 1, file);
    }
    std::rewind(file);
    return file;
}

}  // namespace

TEST(Matrix, SumsAndProductsAgreeWithPlainLoops) {
    std::mt19937 rng(14);
    for (int round = 0; round < 200; ++round) {
        const int rows = 1 + static_cast<int>(rng() % 9), inner = 1 + static_cast<int>(rng() % 9), cols = 1 + static_cast<int>(rng() % 9);
        const CMatrix a = Random(rng, rows, inner), b = Random(rng, inner, cols), c = Random(rng, rows, inner);
        CMatrix product(rows, cols), sum(rows, inner), difference(rows, inner);
        for (int i = 1; i <= rows; ++i) {
            for (int j = 1; j <= cols; ++j)
                for (int k = 1; k <= inner; ++k) product(i, j) += a(i, k) * b(k, j);
            for (int j = 1; j <= inner; ++j) {
                sum(i, j) = a(i, j) + c(i, j);
                difference(i, j) = a(i, j) - c(i, j);
            }
        }
        ASSERT_EQ(Show(a * b), Show(product)) << "round " << round;
        ASSERT_EQ(Show(a + c), Show(sum)) << "round " << round;
        ASSERT_EQ(Show(a - c), Show(difference)) << "round " << round;
    }
}

TEST(Matrix, RowsAndColumnsComeAndGo) {
    struct {
        const char* name;
        std::function<CMatrix()> make;
        const char* result;
    } const rows[] = {
        {"rows are added below", [] { CMatrix m = Of(2, 2, {1, 2, 3, 4}); m.RowExtend(1, 9); return m; }, "3x2: 1 2 3 4 9 9"},
        {"columns are added at the right", [] { CMatrix m = Of(2, 2, {1, 2, 3, 4}); m.ColExtend(2, 9); return m; }, "2x4: 1 2 9 9 3 4 9 9"},
        {"a row goes and the rest close up", [] { CMatrix m = Of(3, 2, {1, 2, 3, 4, 5, 6}); m.DeleteRow(2); return m; }, "2x2: 1 2 5 6"},
        {"the last row goes", [] { CMatrix m = Of(1, 2, {1, 2}); m.DeleteRow(1); return m; }, "0x2:"},
        {"new sizes clear", [] { CMatrix m = Of(2, 2, {1, 2, 3, 4}); m.ReDimension(1, 3); return m; }, "1x3: 0 0 0"},
        {"no rows, five columns", [] { CMatrix m = Of(1, 1, {1}); m.ReDimension(0, 5); return m; }, "0x5:"},
        {"a row as a vector", [] { return CMatrix(GetVectorByRow(Of(2, 2, {1, 2, 3, 4}), 2)); }, "1x2: 3 4"},
        {"a vector as a new row", [] { CMatrix m = Of(1, 2, {1, 2}); MatrixAppendRow(m, CVector(2, 7)); return m; }, "2x2: 1 2 7 7"},
        {"a first row", [] { CMatrix m; MatrixAppendRow(m, CVector(2, 7)); return m; }, "1x2: 7 7"},
        {"matrix below matrix", [] { return MatrixAppendMatrix(Of(1, 2, {1, 2}), Of(2, 2, {3, 4, 5, 6})); }, "3x2: 1 2 3 4 5 6"},
        {"a column as a vector", [] { return CMatrix(ToVector(Of(3, 1, {1, 2, 3}))); }, "1x3: 1 2 3"},
        {"more of both is no vector", [] { return CMatrix(ToVector(Of(2, 2, {1, 2, 3, 4}))); }, "0x0:"},
        {"a vector as a column", [] { return ToColVector(CVector(2, 4)); }, "2x1: 4 4"},
        {"vectors add", [] { return CMatrix(CVector(2, 4) + CVector(3, 1)); }, "1x2: 5 5"},
        {"a product over nothing", [] { return CMatrix(2, 0) * CMatrix(0, 2); }, "2x2: 0 0 0 0"},
        {"floats", [] { CArray<float, float> a; a.Add(0.5f); a.Add(2.0f); return CMatrix(ConvertFromFloatArray(a)); }, "1x2: 0.5 2"},
    };
    for (const auto& row : rows) EXPECT_EQ(Show(row.make()), row.result) << row.name;
    EXPECT_EQ(IsZeroVector(CVector(3, -1e-5)), 1);
    EXPECT_EQ(IsZeroVector(CVector(3, -1.1e-5)), 0);
}

TEST(Matrix, EachFailureHasItsMessage) {
    CMatrix m = Of(2, 2, {1, 2, 3, 4});
    CVector v(3, 2.0);
    double* row = nullptr;
    EXPECT_EQ(v[1] + v[3], 4.0);
    struct {
        const char* name;
        std::function<void()> act;
        const char* message;
    } const rows[] = {
        {"row 0", [&] { m(0, 1); }, "数组下标越界！"},
        {"column 3", [&] { m(1, 3); }, "数组下标越界！"},
        {"behind a vector", [&] { v[4]; }, "数组下标越界！"},
        {"nothing at all", [] { CMatrix()(1, 1); }, "数组下标越界！"},
        {"deleting row 3", [&] { m.DeleteRow(3); }, "数组下标越界！"},
        {"taking row 0", [&] { m.GetRow(0, row); }, "数组下标越界！"},
        {"adding what is smaller", [&] { m + Of(2, 1, {1, 2}); }, "数组下标越界！"},
        {"sizes that don't multiply", [&] { m* Of(1, 2, {1, 2}); }, "数组下标越界！"},
        {"vector of row 3", [&] { GetVectorByRow(m, 3); }, "取向量时下裱越界"},
        {"setting row 3", [&] { SetVector(m, CVector(2, 0), 3); }, "SetVector行号错误！"},
        {"setting three in two", [&] { SetVector(m, v, 1); }, "SetVector列数错误！"},
        {"a row too long to append", [&] { MatrixAppendRow(m, v); }, "SetVector列数错误！"},
        {"more memory than there is", [] { CMatrix(2000000000, 2000000000); }, "CMatrix::CMatrix, not enough memory!"},
        {"more of it", [] { CMatrix().ReDimension(2000000000, 2000000000); }, "CMatrix::ReDimension错误"},
        {"more rows than are counted", [&] { m.RowExtend(2147483647, 0); }, "CMatrix::CMatrix, not enough memory!"},
        {"no message", [] { throw CAXE_Exception("Matrix", 1, ""); }, "__UNKNOWN__"},
    };
    for (const auto& test : rows) EXPECT_EQ(MessageOf(test.act), test.message) << test.name;
    EXPECT_EQ(Show(m), "2x2: 1 2 3 4");  // none of them has touched it
    m.GetRow(2, row);
    EXPECT_EQ(row[0] + row[1], 7);
    delete[] row;
}

TEST(Matrix, FilesComeBackAndLiesAreRefused) {
    std::FILE* file = std::tmpfile();
    const CMatrix m = Of(2, 3, {1, 2, 3, 4, 5, -0.25});
    m.Write_Binary(file);
    EXPECT_EQ(std::ftell(file), 8 + 48);
    std::rewind(file);
    CMatrix back(1, 1);
    back.Read_Binary(file);
    std::fclose(file);
    EXPECT_EQ(Show(back), Show(m));

    struct {
        const char* name;
        std::int32_t rows, cols;
        int doubles;
        bool good;
    } const rows[] = {
        {"as many as there are", 3, 2, 6, true},
        {"rows squared above the limit, however few elements", 20000, 1, 20000, false},
        {"at the limit", 10000, 1, 10000, true},
        {"a negative product", -1, 5, 5, false},
        {"both negative", -2, -3, 6, false},
        {"2^31 rows but one", 2147483647, 1, 4, false},
        {"a product beyond 32 bits", 10000, 2147483647, 4, false},
        {"one element short", 3, 2, 5, false},
        {"no elements", 0, 7, 0, true},
    };
    for (const auto& row : rows) {
        std::FILE* in = FileOf(row.rows, row.cols, row.doubles);
        CMatrix read(2, 2);
        EXPECT_EQ(MessageOf([&] { read.Read_Binary(in); }), row.good ? "none" : "错误行列数") << row.name;
        std::fclose(in);
        EXPECT_EQ(read.GetNumRow(), row.rows) << row.name;  // the sizes are read before they are judged
        if (!row.good) {
            EXPECT_EQ(MessageOf([&] { read(1, 1); }), "数组下标越界！") << row.name;
        }
    }
}
