// Nodes, lines and plates in files: the very bytes, round trips, and files that are cut, wrong or hostile.
#include <gtest/gtest.h>

#include <random>

#include "file_fixtures.h"
#include "plate_builder.h"

namespace {

using Storer = int (CGouJianEx::*)(std::FILE*);

template <class T>
std::string Written(T& obj, int (T::*write)(std::FILE*), int result = 1) {
    TempFile file;
    EXPECT_EQ((obj.*write)(file), result);
    return file.Content();
}
std::string TextOf(CGouJianEx& obj) { return Written(obj, &CGouJianEx::SaveData); }
std::string BytesOf(CGouJianEx& obj) { return Written(obj, &CGouJianEx::WriteBinary); }

template <class T>
int Read(T& obj, int (T::*read)(std::FILE*), const std::string& content) {
    TempFile file(content);
    return (obj.*read)(file);
}
int Load(CGouJianEx& obj, const std::string& text) { return Read(obj, &CGouJianEx::LoadData, text); }
int ReadBytes(CGouJianEx& obj, const std::string& bytes) { return Read(obj, &CGouJianEx::ReadBinary, bytes); }

/// Words in hex, little-endian: "00000005 ...".
std::string Hex(const std::string& bytes) {
    std::string out;
    char text[16];
    for (std::size_t i = 0; i + 3 < bytes.size(); i += 4) {
        const auto at = [&](std::size_t k) { return static_cast<unsigned>(static_cast<unsigned char>(bytes[i + k])); };
        std::snprintf(text, sizeof text, "%08x ", at(0) | at(1) << 8 | at(2) << 16 | at(3) << 24);
        out += text;
    }
    return out + std::string(bytes.size() % 4, '?');
}
std::string Words(std::initializer_list<std::uint32_t> words) {
    std::string bytes;
    for (const std::uint32_t w : words)
        for (int k = 0; k < 4; ++k) bytes += static_cast<char>(w >> 8 * k & 0xFF);
    return bytes;
}

/// A room with a rounded corner: four nodes and a fifth, four lines and an arc. Identities 1 to 5 of each type.
const char* const kRoom = "0,0 - 8000,0; 8000,0 - 8000,4000; arc 6000,4000 2000 0..90; 0,6000 - 6000,6000; 0,0 - 0,6000";
const char* const kRoomBorder = "0+ | 1+ | 2+ | 3- | 4-";

/// Everything of a net, nodes first, and a plate that is in no store.
std::string BinaryOf(CPlateNet& net, CMianGouJian& plate) {
    std::string bytes;
    for (CGjNetNode* node : NodesOf(net)) bytes += BytesOf(*node);
    for (CGjNetLine* line : net.m_lines) bytes += BytesOf(*line);
    return bytes + BytesOf(plate);
}

/// Reads what BinaryOf wrote into an empty net. Null when a reader refuses.
std::unique_ptr<CMianGouJian> ReadNet(CPlateNet& net, const std::string& bytes, int nodes, int lines) {
    TempFile file(bytes);
    const auto add = [&](std::unique_ptr<CGouJianEx> obj) {
        if (!obj->ReadBinary(file)) return false;
        if (obj->QueryBasicType() == kBasicLine) net.m_lines.push_back(static_cast<CGjNetLine*>(obj.get()));
        return net.AddGouJian(obj.release()) != 0;  // owned by the store
    };
    for (int i = 0; i < nodes; ++i)
        if (!add(std::make_unique<CGjNetNode>())) return nullptr;
    for (int i = 0; i < lines; ++i)
        if (!add(std::make_unique<CGjNetLine>())) return nullptr;
    auto plate = std::make_unique<CMianGouJian>();
    return plate->ReadBinary(file) ? std::move(plate) : nullptr;
}

std::string Caches(const CGjNetLine& l) {
    std::string out;
    for (const float v : {l.m_fMidX, l.m_fMidY, l.m_fCenterX, l.m_fCenterY, l.m_fStartDir, l.m_fEndDir, l.m_fR, l.m_fStartTangent,
                          l.m_fEndTangent, l.m_fLength, l.m_fStartX, l.m_fStartY, l.m_fEndX, l.m_fEndY, l.m_fChordLength, l.m_fBulge})
        out += Hex(Words({std::bit_cast<std::uint32_t>(v)}));
    return out;
}

}  // namespace

// --- the very bytes -----------------------------------------------------------------------------------------

TEST(NetFile, ExactBytes) {
    CPlateNet net("0,0 - 8000,0; arc 4000,0 4000 0..60; arc 4000,0 4000 60..180");
    net.m_lines[0]->m_pEndNode->m_fX = 8000.125f;
    EXPECT_EQ(TextOf(*net.m_lines[0]->m_pEndNode), "###WangDian2\n2,16777218,8000.12500,0.00000\n");
    EXPECT_EQ(Hex(BytesOf(*net.m_lines[0]->m_pEndNode)), "00000002 01000002 45fa0100 00000000 ");
    EXPECT_EQ(TextOf(*net.m_lines[1]), "###WangXian2\n2,33554434,1\n2,16777218,3,16777219,-30.000000\n");
    EXPECT_EQ(Hex(BytesOf(*net.m_lines[1])), "00000002 02000002 00000001 00000002 01000002 00000003 01000003 c1f00000 ");
    const auto plate = net.Plate("0+ | 1+ 2+");
    EXPECT_EQ(TextOf(*plate),
              "###JianTuBan1\n1,50331649,2\n"
              "####XingZhuangBian1\n1\n#####Bian1\n1,33554433,1\n"
              "####XingZhuangBian2\n2\n#####Bian1\n2,33554434,1\n#####Bian2\n3,33554435,1\n");
    EXPECT_EQ(Hex(BytesOf(*plate)),
              "00000001 03000001 00000002 "
              "00000001 00000001 02000001 00000001 "
              "00000002 00000002 02000002 00000001 00000003 02000003 00000001 ");

    CMianGouJian none;
    none.set_m_dwGouJianID(0xC8000001);
    none.set_m_dwGouJianNO(0xFFFFFFFF);
    EXPECT_EQ(TextOf(none), "###JianTuBan-1\n-1,-939524095,0\n") << "unsigned numbers are written as signed";
    EXPECT_EQ(Hex(BytesOf(none)), "ffffffff c8000001 00000000 ");
    CMianGouJian back;
    EXPECT_EQ(Load(back, TextOf(none)), 1);
    EXPECT_EQ(back.get_m_dwGouJianID(), 0x03000001u);
    EXPECT_EQ(back.get_m_dwGouJianNO(), 0xFFFFFFFFu);
    EXPECT_FALSE(back.HasWholeBorder());
    EXPECT_EQ(ReadBytes(back, BytesOf(none)), 1);
}

TEST(NetFile, TheFormsDisagreeAboutANumberAfterRenumbering) {
    CPlateNet net("0,0 - 8000,0; arc 4000,0 4000 0..180");
    const auto plate = net.Plate("0+ | 1+");
    net.m_lines[1]->set_m_dwGouJianNO(77);
    CGjXingZhuangBian& arc = plate->m_arrXingZhuangBian[1];
    EXPECT_EQ(Written(arc, &CGjXingZhuangBian::SaveData), "####XingZhuangBian2\n1\n#####Bian1\n77,33554434,1\n");
    EXPECT_EQ(Hex(Written(arc, &CGjXingZhuangBian::WriteBinary)), "00000001 00000002 02000002 00000001 ");
    arc.m_arrBian[0].m_pNetLine = nullptr;
    EXPECT_EQ(Written(arc, &CGjXingZhuangBian::SaveData, 0), "####XingZhuangBian2\n1\n#####Bian1\n2,33554434,1\n")
        << "of a line that is gone what was stored";
}

// --- round trips --------------------------------------------------------------------------------------------

TEST(NetFile, BinaryBringsAllBack) {
    CPlateNet before(kRoom);
    const auto plate = before.Plate(kRoomBorder);
    const std::string bytes = BinaryOf(before, *plate);
    EXPECT_EQ(bytes.size(), 5 * 16 + 5 * 32 + (12 + 5 * 16));
    CPlateNet after;
    const auto back = ReadNet(after, bytes, 5, 5);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(Dump(after, true), Dump(before, true));
    for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(Caches(*after.m_lines[i]), Caches(*before.m_lines[i])) << "line " << i;
    EXPECT_TRUE(back->HasWholeBorder());
    EXPECT_EQ(Figures(*back), Figures(*plate));
    EXPECT_EQ(Sides(*back), Sides(*plate));
    EXPECT_EQ(BinaryOf(after, *back), bytes);
    EXPECT_EQ(back->m_arrXingZhuangBian[4].m_nIndex, 5);
    EXPECT_EQ(back->m_arrXingZhuangBian[4].m_arrBian[0].m_nIndex, 1);

    // A plate that is read over another one has nothing left of it.
    const auto other = after.Plate("2+ | 3-");
    EXPECT_EQ(ReadBytes(*other, BytesOf(*back)), 1);
    EXPECT_EQ(Figures(*other) + Sides(*other), Figures(*plate) + Sides(*plate));
    EXPECT_EQ(Load(*other, TextOf(*back)), 1);
    EXPECT_EQ(Figures(*other) + Sides(*other), Figures(*plate) + Sides(*plate));
    CMianGouJian empty;
    EXPECT_EQ(ReadBytes(*other, BytesOf(empty)), 1);
    EXPECT_EQ(Figures(*other) + Sides(*other), kNoFigures);
}

TEST(NetFile, TextGivesNoPositionsBack) {
    CPlateNet before(kRoom), after;
    before.m_lines[0]->set_m_byteStatus(GJ_STATUS_SELECTED);
    for (CGjNetNode* node : NodesOf(before)) {
        auto* back = new CGjNetNode;  // owned by the store
        ASSERT_EQ(Load(*back, TextOf(*node)), 1);
        EXPECT_EQ(back->get_m_dwGouJianID(), node->get_m_dwGouJianID());
        EXPECT_EQ(back->get_m_dwGouJianNO(), node->get_m_dwGouJianNO());
        EXPECT_EQ(Place(back->m_fX, back->m_fY), "0,0");
        back->m_fX = 5;
        ASSERT_EQ(Load(*back, TextOf(*node)), 1);
        EXPECT_EQ(back->m_fX, 5) << "they stay as they were";
        back->m_fX = node->m_fX;
        back->m_fY = node->m_fY;
        after.AddGouJian(back);
    }
    for (CGjNetLine* line : before.m_lines) {
        auto* back = new CGjNetLine;  // owned by the store
        ASSERT_EQ(Load(*back, TextOf(*line)), 1);
        EXPECT_EQ(back->m_bParamCalculated, 0);
        EXPECT_EQ(back->get_m_byteStatus(), GJ_STATUS_NORMAL);
        after.AddGouJian(back);
        after.m_lines.push_back(back);
        EXPECT_EQ(Caches(*back), Caches(*line));
    }
    EXPECT_EQ(Dump(after, true), Dump(before, true));
    CMianGouJian plate;
    EXPECT_EQ(Load(plate, TextOf(*before.Plate(kRoomBorder))), 1);
    EXPECT_EQ(Figures(plate), Figures(*before.Plate(kRoomBorder)));
    EXPECT_EQ(plate.m_arrBoundery[0], after.m_lines[0]);
}

TEST(NetFile, CommentsAndReturnsAreAsIfAbsent) {
    CPlateNet net("0,0 - 8000,0; arc 4000,0 4000 0..180");
    const auto plate = net.Plate("0+ | 1+");
    std::string text = TextOf(*net.m_lines[0]->m_pStartNode) + TextOf(*net.m_lines[1]) + TextOf(*plate), commented = "; a model\r\n;\n";
    for (const char c : text) commented += c == '\n' ? std::string("\r\n;###WangDian9\n;") + std::string(700, 'x') + "\n" : std::string(1, c);
    TempFile file(commented);
    CGjNetNode node;
    CGjNetLine line;
    CMianGouJian back;
    EXPECT_EQ(node.LoadData(file), 1);
    EXPECT_EQ(line.LoadData(file), 1);
    EXPECT_EQ(back.LoadData(file), 1);
    EXPECT_EQ(TextOf(line) + TextOf(back), TextOf(*net.m_lines[1]) + TextOf(*plate));
    EXPECT_EQ(Figures(back), Figures(*plate));
}

TEST(NetFile, TheTypeByteAndStatusOfAFileDontCount) {
    CPlateNet net("0,0 - 8000,0");
    CGjNetNode node;
    node.set_m_dwGouJianID(0xC8000007);
    CGjNetLine line(*net.m_lines[0]);
    line.m_pDrawGraph = nullptr;  // shared with the original, which deletes it
    line.set_m_dwGouJianID(0xC8000007);
    for (const bool text : {false, true}) {
        CGjNetNode readNode;
        CGjNetLine readLine;
        readNode.set_m_byteStatus(GJ_STATUS_HIDDEN);
        readLine.set_m_byteStatus(GJ_STATUS_HIDDEN);
        readLine.m_bParamCalculated = 1;
        EXPECT_EQ(text ? Load(readNode, TextOf(node)) : ReadBytes(readNode, BytesOf(node)), 1);
        EXPECT_EQ(text ? Load(readLine, TextOf(line)) : ReadBytes(readLine, BytesOf(line)), 1);
        EXPECT_EQ(readLine.m_bParamCalculated, 0) << "the caches don't fit any longer";
        EXPECT_EQ(readNode.get_m_dwGouJianID(), 0x01000007u);
        EXPECT_EQ(readLine.get_m_dwGouJianID(), 0x02000007u);
        EXPECT_EQ(readNode.get_m_byteStatus() + readLine.get_m_byteStatus(), GJ_STATUS_NORMAL);
    }
}

// --- what is missing ----------------------------------------------------------------------------------------

TEST(NetFile, LinesAndNodesThatAreNotThere) {
    CPlateNet before("0,0 - 8000,0; arc 4000,0 4000 0..180");
    const auto source = before.Plate("0+ | 1+");
    const std::string lineText = TextOf(*before.m_lines[0]), lineBytes = BytesOf(*before.m_lines[0]);
    CJainTuBanBian& firstSide = source->m_arrXingZhuangBian[0].m_arrBian[0];
    const std::string sideText = Written(firstSide, &CJainTuBanBian::SaveData), sideBytes = Written(firstSide, &CJainTuBanBian::WriteBinary);
    CGjXingZhuangBian& first = source->m_arrXingZhuangBian[0];
    first.m_nBian = 2;
    first.m_arrBian.Add(first.m_arrBian[0]);
    const std::string shapeText = Written(first, &CGjXingZhuangBian::SaveData), shapeBytes = Written(first, &CGjXingZhuangBian::WriteBinary);

    const auto expectNothingFound = [&] {
        CGjNetLine line;
        EXPECT_EQ(Load(line, lineText), 0);
        EXPECT_EQ(ReadBytes(line, lineBytes), 0);
        EXPECT_EQ(line.m_pStartNode, nullptr);
        EXPECT_EQ(line.m_pEndNode, nullptr);
        CJainTuBanBian side;
        EXPECT_EQ(Read(side, &CJainTuBanBian::LoadData, sideText), 0);
        EXPECT_EQ(Read(side, &CJainTuBanBian::ReadBinary, sideBytes), 0);
        EXPECT_EQ(side.m_pNetLine, nullptr);
        EXPECT_EQ(side.m_nLineID, 0x02000001);
        CGjXingZhuangBian shape;
        EXPECT_EQ(Read(shape, &CGjXingZhuangBian::LoadData, shapeText), 1) << "in silence";
        EXPECT_EQ(shape.m_nBian, 2);
        EXPECT_EQ(Read(shape, &CGjXingZhuangBian::ReadBinary, shapeBytes), 0);
        EXPECT_EQ(shape.m_nBian, 1) << "stops there";
        EXPECT_EQ(shape.m_arrBian.GetSize(), 1);
        CMianGouJian plate;
        for (const bool text : {false, true}) {
            EXPECT_EQ(text ? Load(plate, TextOf(*source)) : ReadBytes(plate, BytesOf(*source)), 1) << "in silence too";
            EXPECT_FALSE(plate.HasWholeBorder());
            EXPECT_EQ(Figures(plate) + Sides(plate), kNoFigures);
            EXPECT_EQ(plate.get_m_dwGouJianID(), source->get_m_dwGouJianID());
        }
    };
    {
        CPlateNet empty;
        expectNothingFound();
        // Other components stand under these identities.
        for (const std::uint32_t id : {0x01000001u, 0x01000002u, 0x02000001u, 0x02000002u}) {
            auto* stranger = new CGouJianEx;  // owned by the store
            stranger->set_m_dwGouJianID(id);
            empty.AddGouJian(stranger);
        }
        expectNothingFound();
    }
    g_pCurrentDataBase = nullptr;
    ASSERT_EQ(g_pGridDataBase, nullptr);
    expectNothingFound();
}

TEST(NetFile, ABorderThatDoesntCloseIsRefused) {
    CPlateNet net(kRoom);
    for (const char* border : {"0+", "0+ | 1+ | 2+ | 3-", "0+ | 1+ | 2+ | 3- | 4+", "0+ | | 1+ | 2+ | 3- | 4-", "1+ | 0+ | 2+ | 3- | 4-"}) {
        SCOPED_TRACE(border);
        CMianGouJian source, plate;
        net.SetBorder(source, border);
        EXPECT_EQ(ReadBytes(plate, BytesOf(source)), 0);
        EXPECT_EQ(Figures(plate) + Sides(plate), kNoFigures);
        EXPECT_EQ(Load(plate, TextOf(source)), 0);
        EXPECT_EQ(Figures(plate) + Sides(plate), kNoFigures);
    }
}

// --- files that are wrong -----------------------------------------------------------------------------------

TEST(NetFile, KeyLines) {
    CPlateNet net("0,0 - 8000,0; arc 4000,0 4000 0..180");
    const auto plate = net.Plate("0+ | 1+");
    CGjNetNode node;
    CGjNetLine line;
    CMianGouJian back;
    CGjXingZhuangBian shape;
    CJainTuBanBian side;
    EXPECT_EQ(Load(node, TextOf(*net.m_lines[0])), 0);
    EXPECT_EQ(Load(line, TextOf(*plate)), 0);
    EXPECT_EQ(Load(back, TextOf(*net.m_lines[0])), 0);
    line.m_dwStartID = line.m_dwEndID = 0x01000001;
    EXPECT_EQ(Load(line, "###WangXian1\n1,33554433,1\n"), 0) << "the ends are in a line of their own";
    EXPECT_EQ(Load(back, "##JianTuBan1\n1,50331649,0\n"), 0);
    EXPECT_EQ(Load(node, "  x###WangDianx\n3,16777219\n"), 1) << "anywhere in the line, and nothing but the key counts";
    EXPECT_EQ(node.get_m_dwGouJianID(), 0x01000003u);
    EXPECT_EQ(Read(shape, &CGjXingZhuangBian::LoadData, "#####Bian1\n1,33554433,1\n"), 0);
    EXPECT_EQ(Read(side, &CJainTuBanBian::LoadData, "###JianTuBan1\n1,33554433,1\n"), 0);
    EXPECT_EQ(Read(side, &CJainTuBanBian::LoadData, "####XingZhuangBian1\n1,33554433,0\n"), 1) << "not noticed";
    EXPECT_EQ(side.m_pNetLine, net.m_lines[0]);
    // A shape side whose key is wrong is passed over by the plate, which then has a gap.
    std::string text = TextOf(*plate);
    text.replace(text.find("XingZhuangBian2"), 4, "ping");
    EXPECT_EQ(Load(back, text), 0);
    EXPECT_EQ(Figures(back), kNoFigures);
}

TEST(NetFile, NumbersOfATextAreScannedAsFarAsTheyGo) {
    CPlateNet net("0,0 - 8000,0");
    struct { const char* numbers; unsigned no, id; } const rows[] = {
        {"7,16777216", 7, 0x01000000}, {" 7, 8,9,10", 7, 0x01000008}, {"7;8", 7, 0x01000009}, {"x", 9, 0x01000009},
        {"-1,-1", 0xFFFFFFFF, 0x01FFFFFF}, {"7 ,8", 7, 0x01000009}, {"99999999999999999999,8", 0xFFFFFFFF, 0x01000008},
        {"", 9, 0x01000009}, {",,", 9, 0x01000009},
    };
    for (const auto& row : rows) {
        CGjNetNode node;
        node.set_m_dwGouJianNO(9);
        node.set_m_dwGouJianID(9);
        EXPECT_EQ(Load(node, std::string("###WangDian\n") + row.numbers + "\n"), 1);
        EXPECT_EQ(node.get_m_dwGouJianNO(), row.no) << row.numbers;
        EXPECT_EQ(node.get_m_dwGouJianID(), row.id) << row.numbers;
    }
    struct { const char* bulge; float value; } const ends[] = {{",-30.5", -30.5f}, {", -30.5x", -30.5f}, {",", 1}, {",x", 1}, {",-", 1}, {"", 1}, {";2", 1}, {",1e99", HUGE_VALF}};
    for (const auto& row : ends) {
        CGjNetLine line;
        line.m_fBulge = 1;
        EXPECT_EQ(Load(line, std::string("###WangXian1\n1,33554433,1\n1,16777217,2,16777218") + row.bulge + "\n"), 1);
        EXPECT_EQ(line.m_fBulge, row.value) << row.bulge;
    }
}

TEST(NetFile, ImpossibleCounts) {
    CPlateNet net("0,0 - 8000,0; arc 4000,0 4000 0..180");
    for (const std::uint32_t count : {0xFFFFFFFFu, 0x80000000u, 0x7FFFFFFFu, 100'001u, 100'000u, 3u}) {
        SCOPED_TRACE(count);
        const std::string number = std::to_string(static_cast<std::int32_t>(count)), side = "#####Bian1\n1,33554433,1\n";
        CGjXingZhuangBian shape;
        EXPECT_EQ(Read(shape, &CGjXingZhuangBian::ReadBinary, Words({count, 1, 0x02000001, 1})), 0);
        EXPECT_EQ(shape.m_nBian, shape.m_arrBian.GetSize());
        EXPECT_EQ(Read(shape, &CGjXingZhuangBian::LoadData, "####XingZhuangBian1\n" + number + "\n" + side), 0);
        EXPECT_EQ(shape.m_nBian, shape.m_arrBian.GetSize());
        const std::string good = Words({1, 1, 0x02000001, 1, 1, 2, 0x02000002, 1});
        CMianGouJian plate;
        for (const std::string& bytes : {Words({1, 0x03000001, count}) + good, Words({1, 0x03000001, 2, count, 1, 0x02000001, 1}) + good}) {
            const int result = ReadBytes(plate, bytes);
            EXPECT_TRUE(result == 0 || count == 3 || count == 100'000) << "these are possible, and lead to lines that aren't there";
            EXPECT_FALSE(plate.HasWholeBorder());
            EXPECT_EQ(Figures(plate), kNoFigures);
            EXPECT_EQ(plate.m_nXingZhuangBian, plate.m_arrXingZhuangBian.GetSize());
        }
        EXPECT_EQ(Load(plate, "###JianTuBan1\n1,50331649," + number + "\n####XingZhuangBian1\n1\n" + side), 0);
        EXPECT_EQ(Load(plate, "###JianTuBan1\n1,50331649,1\n####XingZhuangBian1\n" + number + "\n" + side), 0);
        EXPECT_EQ(Figures(plate), kNoFigures);
    }
    CMianGouJian plate;
    EXPECT_EQ(Load(plate, "###JianTuBan1\n1,50331649,4294967296\n"), 0) << "not taken for 0";
    EXPECT_EQ(Load(plate, "###JianTuBan1\n1,50331649\n"), 0) << "no count at all";
}

TEST(NetFile, FilesCutAtEveryByte) {
    CPlateNet net(kRoom);
    const auto plate = net.Plate(kRoomBorder);
    const std::string figures = Figures(*plate);
    CGouJianEx* const originals[] = {net.m_lines[0]->m_pStartNode, net.m_lines[2], plate.get()};
    for (CGouJianEx* original : originals) {
        const auto fresh = [&]() -> std::unique_ptr<CGouJianEx> {
            switch (original->QueryBasicType()) {
                case kBasicNode: return std::make_unique<CGjNetNode>();
                case kBasicLine: return std::make_unique<CGjNetLine>();
                default: return std::make_unique<CMianGouJian>();
            }
        };
        const std::string bytes = BytesOf(*original), text = TextOf(*original);
        const std::size_t lastLine = text.rfind('\n', text.size() - 2) + 1;
        for (std::size_t length = 0; length < bytes.size(); ++length) {
            const auto obj = fresh();
            ASSERT_EQ(ReadBytes(*obj, bytes.substr(0, length)), 0) << "binary cut at " << length;
            if (auto* cut = dynamic_cast<CMianGouJian*>(obj.get())) {
                ASSERT_EQ(Figures(*cut), kNoFigures);
            }
        }
        EXPECT_EQ(ReadBytes(*fresh(), bytes), 1);
        for (std::size_t length = 0; length < text.size(); ++length) {
            const auto obj = fresh();
            const int result = Load(*obj, text.substr(0, length));
            SCOPED_TRACE(testing::Message() << "text cut at " << length);
            if (length <= lastLine) {
                ASSERT_EQ(result, 0);
            }
            if (auto* cut = dynamic_cast<CMianGouJian*>(obj.get())) {
                ASSERT_EQ(Figures(*cut), result && cut->HasWholeBorder() ? figures : kNoFigures);
            }
        }
        EXPECT_EQ(Load(*fresh(), text), 1);
        EXPECT_EQ((original->*Storer(&CGouJianEx::SaveData))(nullptr) + (original->*Storer(&CGouJianEx::WriteBinary))(nullptr), 0);
        EXPECT_EQ(fresh()->LoadData(nullptr) + fresh()->ReadBinary(nullptr), 0);
    }
}

// Bytes changed at random: a plate has figures, and these are finite, or it has none.
TEST(NetFile, ChangedFilesDoNoHarm) {
    CPlateNet net(kRoom);
    const auto plate = net.Plate(kRoomBorder);
    const std::string bytes = BytesOf(*plate), text = TextOf(*plate);
    std::mt19937 rng(7);
    const auto pick = [&](std::size_t n) { return std::uniform_int_distribution<std::size_t>(0, n - 1)(rng); };
    int whole = 0;
    for (int round = 0; round < 4000; ++round) {
        SCOPED_TRACE(testing::Message() << "round " << round);
        const bool asText = round % 2 != 0;
        std::string changed = asText ? text : bytes;
        for (std::size_t n = pick(3) + 1; n > 0; --n)
            changed[pick(changed.size())] = asText ? "0123456789,-\n;B"[pick(15)] : static_cast<char>(pick(2) ? pick(256) : pick(6));
        CMianGouJian back;
        asText ? Load(back, changed) : ReadBytes(back, changed);
        ASSERT_EQ(back.m_nXingZhuangBian, back.m_arrXingZhuangBian.GetSize());
        for (const CGjXingZhuangBian& shape : back.m_arrXingZhuangBian) ASSERT_EQ(shape.m_nBian, shape.m_arrBian.GetSize());
        if (!back.HasWholeBorder()) {
            ASSERT_EQ(Figures(back) + Sides(back), kNoFigures);
            continue;
        }
        ++whole;
        ASSERT_TRUE(std::isfinite(back.GetArea()) && std::isfinite(back.m_fCenterX) && std::isfinite(back.GetZhouChang()));
    }
    EXPECT_GT(whole, 200);
}
