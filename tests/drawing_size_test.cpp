// What the import's dialog tells of a drawing's size before anything is taken.
#include "host/editor/drawing_size.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/dxf/dxf.h"

namespace {

std::string Entity(const char* kind, const char* layer, const std::string& groups) {
    return std::string("0\n") + kind + "\n8\n" + layer + "\n" + groups;
}

}  // namespace

TEST(DrawingSize, IsToldAndDoubted) {
    // On A a line of 4 by 3 and an arc over a quarter, 3 high from (4, 0): 1.41 from end to end. On B a
    // circle. C lies far out.
    DXF drawing;
    drawing.Read_Bytes_To_Mem("0\nSECTION\n2\nENTITIES\n" +
                              Entity("LINE", "A", "10\n0\n20\n0\n11\n4\n21\n3\n") +
                              Entity("ARC", "a", "10\n4\n20\n2\n40\n1\n50\n0\n51\n90\n") +
                              Entity("CIRCLE", "B", "10\n50\n20\n50\n40\n10\n") +
                              Entity("LINE", "C", "10\n2500000\n20\n0\n11\n2500030\n21\n0\n") + "0\nENDSEC\n0\nEOF\n");
    const auto layers = SummarizeLayers(drawing);
    ASSERT_EQ(layers.size(), 3u);
    const DrawingSizes sizes(drawing, layers);
    const struct {
        const char *name, *ticks;
        double scale;
        const char *size, *warning;
    } rows[] = {
        {"metres", "10", 1000, "5.00 × 3.00 米", ""},
        {"metres, both layers", "11", 1000, "60.0 × 60.0 米", ""},
        {"taken for millimetres", "11", 1, "0.0600 × 0.0600 米",
         "注意: 整个图形不到 1 米; 4 段线中有 4 段不长于容差 50 毫米, "
         "不会输入。请检查图纸单位和勾选的图层。"},
        {"large enough, but half of it short", "10", 30, "0.15 × 0.0900 米",
         "注意: 整个图形不到 1 米; 2 段线中有 1 段不长于容差 50 毫米, "
         "不会输入。请检查图纸单位和勾选的图层。"},
        {"taken for kilometres", "10", 1e6 * 2, "10000 × 6000 米",
         "注意: 整个图形超过 5 公里。请检查图纸单位和勾选的图层。"},
        {"far out", "001", 1000, "30.0 × 0.0000 米",
         "注意: 图形离原点 2500 公里, 坐标只精确到 256 毫米。请检查图纸单位和勾选的图层。"},
        {"nothing ticked", "00", 1, "", ""},
        {"fewer ticks than layers", "", 1, "", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const DrawingSizes::Size size = sizes.Of(row.ticks, row.scale, 50);
        EXPECT_EQ(SizeText(size), row.size);
        EXPECT_EQ(SizeWarning(size, 50), row.warning);
    }
    EXPECT_EQ(UnitOfScale(DrawingUnits()[UnitOfHeader(1)].millimetres), UnitOfHeader(1));
    EXPECT_EQ(UnitOfHeader(-1), DrawingUnits().size());
}
