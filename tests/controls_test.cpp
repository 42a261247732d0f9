// Tables and previews of drawings, played by hand on the window system without a screen.
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>

#include "controls/adv_dxf_wnd.h"
#include "controls/easy_table_wnd.h"
#include "controls/mem_dc.h"
#include "platform/canvas/client_dc.h"
#include "platform/dxf/dxf.h"
#include "platform/window_system.h"

namespace {

std::string Show(const CEasyTableWnd& table) {
    std::string text;
    for (int row = 0; row < table.GetRowCount(); ++row) {
        for (int column = 0; column < static_cast<int>(table.GetColumns().size()); ++column)
            text.append(column ? "," : "").append(table.GetText(row, column).GetString());
        text += ";";
    }
    return text;
}

/// Three columns, of which the last is not to be edited, and a person before them.
struct Table : testing::Test {
    void SetUp() override {
        table.AddColumn("名称", 80);
        table.AddColumn("mm", 60, true, true);
        table.AddColumn("状态", 70, false);
        table.m_onSelect = [this](int row) { told.append("row ").append(std::to_string(row)).append(" "); };
        table.m_onEdit = [this](int row, int column, const CString& text) {
            told.append(std::to_string(row)).append(",").append(std::to_string(column)).append("=").append(text.GetString()).append(" ");
        };
        table.Create(nullptr, {0, 0, 300, 122}, WindowKind::kTool);  // five rows under the heads
        system.Drain();
    }
    void Fill(int rows) {
        for (int i = 0; i < rows; ++i) table.AddRow({CString(std::string("r").append(std::to_string(i))), CString(std::to_string(i * 100)), "ok"});
        system.Drain();
    }
    void Click(CPoint p, UINT keys = 0) {
        system.DeliverMouse(table, WM_LBUTTONDOWN, keys | MK_LBUTTON, p);
        system.DeliverMouse(table, WM_LBUTTONUP, keys, p);
    }
    void Key(UINT key, const char* text = "", bool shift = false, bool control = false) {
        system.DeliverKey(*system.Focus(), key, shift, control, text);
    }
    CWindowSystem system;
    CEasyTableWnd table;
    std::string told;
};

TEST_F(Table, CellsAreEditedInPlace) {
    Fill(3);
    system.DeliverMouse(table, WM_LBUTTONDBLCLK, MK_LBUTTON, {100, 50});  // second row, second column
    ASSERT_TRUE(table.IsEditing());
    EXPECT_EQ(system.Focus(), &table.GetEdit());
    Key(0, "5");
    Key(VK_RETURN);
    EXPECT_FALSE(table.IsEditing());
    EXPECT_EQ(table.GetRow(), 2) << "Enter goes on to the next row";
    Key(0, "新轴");  // typing takes the text's place
    EXPECT_EQ(table.GetEdit().GetWindowText(), CString("新轴"));
    Key(VK_ESCAPE);
    Key(VK_F2);
    Key(0, "!");
    Click({20, 30});  // elsewhere
    EXPECT_EQ(Show(table), "r0,0,ok;r1,1005,ok;r2,200!,ok;");
    EXPECT_EQ(told, "row 1 1,1=1005 row 2 2,1=200! row 0 ");
    Click({160, 30});
    Key(VK_RETURN);
    EXPECT_FALSE(table.IsEditing()) << "not this column";
    table.SelectCell(1, 0);
    Key(VK_F2);
    table.RemoveAll();  // under the hand
    EXPECT_FALSE(table.IsEditing());
    EXPECT_EQ(table.GetRow(), -1);
}

TEST_F(Table, BlocksGoThroughTheClipboard) {
    Fill(4);
    table.SetText(1, 0, "a\tb");
    system.DeliverMouse(table, WM_LBUTTONDOWN, MK_LBUTTON, {20, 30});
    system.DeliverMouse(table, WM_MOUSEMOVE, MK_LBUTTON, {100, 50});
    system.DeliverMouse(table, WM_LBUTTONUP, 0, {100, 50});
    Key('C', "", false, true);
    EXPECT_EQ(system.m_clipboard, "r0\t0\na b\t100") << "a tab within a cell would tear it";
    Click({20, 90});
    Key(VK_RIGHT, "", true);
    Key('C', "", false, true);
    EXPECT_EQ(system.m_clipboard, "r3\t300");
    system.m_clipboard = "x\t1\tno\r\ny\t2\nz\n";
    Click({20, 70});
    Key('V', "", false, true);
    EXPECT_EQ(Show(table), "r0,0,ok;a\tb,100,ok;x,1,ok;y,2,ok;") << "neither the last column nor a row more";
    table.m_bGrow = true;
    EXPECT_EQ(table.PasteBlock(), 5);
    EXPECT_EQ(Show(table), "r0,0,ok;a\tb,100,ok;x,1,ok;y,2,ok;z,,;");
    table.m_bSelectRows = true;
    Click({100, 30});
    EXPECT_EQ(table.BlockText(), CString("r0\t0\tok"));
}

TEST_F(Table, ABlockEndsWhereTheRowsDo) {
    struct : CTableWnd {
        int GetRowCount() const override { return m_rows; }
        CString GetText(int row, int) const override { return row < m_rows ? CString("x") : CString("beyond"); }
        int m_rows = 5;
    } host;
    host.AddColumn("a", 50);
    host.Create(nullptr, {0, 0, 200, 200}, WindowKind::kTool);
    host.SelectCell(4, 0);
    host.SelectCell(1, 0, true);
    host.m_rows = 3;
    host.Refresh();
    host.SelectCell(2, 0, true);
    EXPECT_EQ(host.BlockText(), CString("x"));
}

TEST_F(Table, ScrollsWithinItsRows) {
    Fill(1000);
    const struct {
        const char* name;
        std::function<void()> act;
        int first;
    } rows[] = {
        {"a notch of the wheel", [&] { system.DeliverWheel(table, 0, -120, {10, 50}); }, 3},
        {"up beyond the start", [&] { system.DeliverWheel(table, 0, 120000, {10, 50}); }, 0},
        {"End with Ctrl", [&] { Click({20, 30}), Key(VK_END, "", false, true); }, 995},
        {"down beyond the end", [&] { system.DeliverWheel(table, 0, -12000, {10, 50}); }, 995},
        {"Home", [&] { Key(VK_HOME, "", false, true); }, 0},
        {"a page", [&] { Key(VK_NEXT); }, 1},
        {"a press under the thumb", [&] { Click({295, 115}); }, 6},
        {"the thumb drawn to the bottom",
         [&] {
             system.DeliverMouse(table, WM_LBUTTONDOWN, MK_LBUTTON, {295, 25});
             system.DeliverMouse(table, WM_MOUSEMOVE, MK_LBUTTON, {295, 5000});
             system.DeliverMouse(table, WM_LBUTTONUP, 0, {295, 5000});
         },
         995},
        {"fewer rows", [&] { table.SetRows(std::vector<CEasyTableWnd::Row>(7)); }, 2},
        {"none", [&] { table.RemoveAll(); }, 0},
    };
    for (const auto& row : rows) {
        row.act();
        EXPECT_EQ(table.GetFirstRow(), row.first) << row.name;
    }
    system.DeliverMouse(table, WM_LBUTTONDOWN, MK_LBUTTON, {80, 10});
    system.DeliverMouse(table, WM_MOUSEMOVE, MK_LBUTTON, {500, 10});
    system.DeliverMouse(table, WM_LBUTTONUP, 0, {500, 10});
    EXPECT_EQ(table.GetColumns()[0].m_nWidth, 500);
    Fill(1);
    EXPECT_EQ(table.GetCellRect(0, 1).left, 500);
    Click({20, 30});
    Key(VK_END);
    EXPECT_EQ(table.GetCellRect(0, 2).right, 300) << "what is chosen comes into sight";
}

TEST(MemDc, ShowsItsRectangleAtTheEnd) {
    CDC screen(std::make_shared<CSurface>(20, 20, 2));
    {
        CMemDC off(&screen, CRect(5, 5, 40, 10));
        off.FillSolidRect(0, 0, 20, 20, 0xFFFFFF);
        EXPECT_EQ(screen.GetPixel(6, 6), 0u);
    }
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 20; ++x) ASSERT_EQ(screen.GetPixel(x, y) != 0, x >= 5 && y >= 5 && y < 10) << x << "," << y;
}

/// A square of 100 on layer A, a line across it on B that is frozen at first.
std::string Drawing() {
    return "0\nSECTION\n2\nTABLES\n0\nTABLE\n2\nLAYER\n0\nLAYER\n2\nA\n62\n1\n70\n0\n0\nLAYER\n2\nB\n62\n3\n70\n1\n0\nENDTAB\n0\nENDSEC\n"
           "0\nSECTION\n2\nENTITIES\n"
           "0\nLWPOLYLINE\n8\nA\n90\n4\n70\n1\n10\n0\n20\n0\n10\n100\n20\n0\n10\n100\n20\n100\n10\n0\n20\n100\n"
           "0\nLINE\n8\nb\n10\n0\n20\n50\n11\n100\n21\n50\n0\nENDSEC\n0\nEOF\n";
}

struct Preview : testing::Test {
    void SetUp() override {
        drawing.Read_Bytes_To_Mem(Drawing());
        window.Create(nullptr, {0, 0, 500, 320}, WindowKind::kTool);
        window.SetDrawing(&drawing);
        system.Drain();
    }
    COLORREF At(CPoint p) { return CClientDC(&window).GetPixel(p.x, p.y); }
    bool Lit(double x, double y, COLORREF color) { return At(window.PixelOf(x, y)) == color; }
    CWindowSystem system;
    DXF drawing;
    CAdvDxfWnd window;
    static constexpr COLORREF kRed = RGB(255, 0, 0), kGreen = RGB(0, 255, 0);
};

TEST_F(Preview, LayersAreSwitchedByNameAndByTheirTicks) {
    ASSERT_EQ(window.GetLayers().size(), 2u);
    EXPECT_EQ(window.GetLayers()[1].m_nCount, 1u);
    EXPECT_TRUE(Lit(30, 0, kRed) && Lit(0, 30, kRed));
    EXPECT_FALSE(Lit(30, 50, kGreen)) << "frozen";
    EXPECT_TRUE(window.SetLayerShown("B", true));
    EXPECT_FALSE(window.SetLayerShown("C", true));
    system.Drain();
    EXPECT_TRUE(Lit(30, 50, kGreen));
    std::string told;
    window.m_onLayer = [&](const CDxfLayerSwitch& layer) { told += layer.m_strName.GetString(); };
    system.DeliverMouse(window, WM_LBUTTONDOWN, MK_LBUTTON, {10, 10});
    EXPECT_FALSE(Lit(30, 0, kRed));
    EXPECT_EQ(told, "A");
    window.SetHiddenDimmed(true);
    system.Drain();
    EXPECT_TRUE(At(window.PixelOf(30, 0)) != At(window.PixelOf(30, 10)) && !Lit(30, 0, kRed)) << "faintly";
    system.DeliverMouse(window, WM_LBUTTONDOWN, MK_LBUTTON, {10, 315});  // below the list
}

TEST_F(Preview, MovesThePictureAndDrawsAtTheEnd) {
    const auto drawn = window.GetDrawCount();
    const CPoint before = window.PixelOf(30, 0);
    for (const UINT down : {WM_LBUTTONDOWN, WM_MBUTTONDOWN}) {
        const UINT key = down == WM_LBUTTONDOWN ? MK_LBUTTON : MK_MBUTTON;
        system.DeliverMouse(window, down, key, {300, 100});
        for (int i = 1; i <= 20; ++i) system.DeliverMouse(window, WM_MOUSEMOVE, key, {300 + i, 100 - i});
        EXPECT_EQ(At({window.PixelOf(30, 0).x + 20, window.PixelOf(30, 0).y - 20}), kRed) << "under the hand";
        system.DeliverMouse(window, down == WM_LBUTTONDOWN ? WM_LBUTTONUP : WM_MBUTTONUP, 0, {320, 80});
    }
    EXPECT_EQ(window.GetDrawCount(), drawn + 2);
    EXPECT_TRUE(window.PixelOf(30, 0) == CPoint(before.x + 40, before.y - 40));
    EXPECT_TRUE(Lit(30, 0, kRed));
    const CPoint held = window.PixelOf(100, 0);
    const double scale = window.GetScale();
    system.DeliverWheel(window, 0, 240, held);
    EXPECT_NEAR(window.GetScale(), scale * 1.44, 1e-9);
    EXPECT_LE(std::abs(window.PixelOf(100, 0).x - held.x) + std::abs(window.PixelOf(100, 0).y - held.y), 1);
    EXPECT_TRUE(Lit(80, 0, kRed));
    window.Fit();
    EXPECT_TRUE(window.PixelOf(30, 0) == before);
}

TEST_F(Preview, StraysDoNotMakeItADot) {
    struct {
        const char* name;
        int lines;
        const char* far;  // of one more line's end
        double least;     // pixels of the 100 units that the others take up
    } const rows[] = {{"a frame about it", 60, "400", 40}, {"a stray", 60, "1e9", 200}, {"too few to tell", 5, "1e9", 0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto line = [](const std::string& from, const std::string& to) {
            return "0\nLINE\n8\n0\n10\n" + from + "\n20\n0\n11\n" + to + "\n21\n100\n";
        };
        std::string text = "0\nSECTION\n2\nENTITIES\n" + line("0", row.far);
        for (int i = 0; i < row.lines; ++i) text += line(std::to_string(i * 100 / row.lines), "100");
        drawing.Read_Bytes_To_Mem(text + "0\nENDSEC\n0\nEOF\n");
        window.SetDrawing(&drawing);
        const double pixels = window.GetScale() * 100;
        EXPECT_GE(pixels, row.least);
        EXPECT_EQ(window.PixelOf(350, 0).x < 500, row.least < 100) << "the frame is in sight";
    }
}

TEST_F(Preview, NoDrawingAndNoHandBreaksIt) {
    std::mt19937 random(5);
    constexpr const char* kNumbers[] = {"0", "1e12", "-1e12", "1e-300", "1", "-90", "7.5", "1e300", "nan"};
    constexpr const char* kKinds[] = {"LINE", "CIRCLE", "ARC", "TEXT", "SOLID", "LWPOLYLINE", "POINT"};
    constexpr const char* kCodes[] = {"10", "20", "11", "21", "40", "42", "50", "51", "12", "22", "70"};
    for (int round = 0; round < 60; ++round) {
        SCOPED_TRACE(round);
        std::string text = "0\nSECTION\n2\nENTITIES\n";
        for (auto i = random() % 30; i > 0; --i) {
            text.append("0\n").append(kKinds[random() % 7]).append("\n8\nL").append(std::to_string(random() % 40)).append("\n1\nAb\n");
            for (int k = 0; k < 12; ++k) text.append(kCodes[random() % 11]).append("\n").append(kNumbers[random() % 9]).append("\n");
        }
        if (round % 4) text += "0\nENDSEC\n0\nEOF\n";
        drawing.Read_Bytes_To_Mem(text);
        window.SetDrawing(&drawing);
        for (int i = 0; i < 25; ++i) {
            const CPoint p(static_cast<int>(random() % 700) - 100, static_cast<int>(random() % 500) - 100);
            switch (random() % 6) {
                case 0: system.DeliverMouse(window, WM_LBUTTONDOWN, MK_LBUTTON, p); break;
                case 1: system.DeliverMouse(window, WM_LBUTTONUP, 0, p); break;
                case 2: system.DeliverWheel(window, 0, static_cast<int>(random() % 24000) - 12000, p); break;
                case 3: window.MoveWindow({0, 0, static_cast<int>(random() % 600), static_cast<int>(random() % 300)}); break;
                default: system.DeliverMouse(window, WM_MOUSEMOVE, MK_LBUTTON, p);
            }
            system.Drain();
            ASSERT_TRUE(window.GetScale() >= 0 && window.GetScale() < 1e10);
        }
    }
    EXPECT_FALSE(window.Open("/nowhere.dxf"));
    EXPECT_EQ(window.GetDrawing(), nullptr);
    EXPECT_TRUE(window.GetLayers().empty());
}

}  // namespace
