// What readers say in English reaches the editor's user in Chinese.
#include "host/editor/reason_text.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <string>

#include "fields/chang.h"
#include "file_fixtures.h"
#include "host/failure.h"
#include "host/fields/field_file.h"
#include "host/models/model_plan.h"
#include "host/models/model_sections.h"
#include "host/tvo_model_host.h"
#include "model_tongue.h"
#include "platform/dxf/dxf.h"

namespace {

/// English is left, but for words of a file's format, or nothing is said.
bool IsBad(const std::string& text) {
    std::string word;
    for (const char c : text + " ") {
        if (c == '$' || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z')) {
            word += c;
            continue;
        }
        if (word.size() > 3 && word[0] != '$' && word != "node") return true;
        word.clear();
    }
    return text.empty() || text.find("其它错误") != text.npos || text.find("内容") != text.npos;
}

}  // namespace

TEST(ReasonText, EachRow) {
    const struct {
        const char *message, *chinese;
    } rows[] = {
        {"cannot open /a b/c.tvo: nodes section at byte 96: its checksum does not hold",
         "节点段, 第 96 字节: 校验和不符"},
        {"cannot open /a b/c.tvo: header at byte 0: it tells of 12 other components, and there are 3",
         "文件头, 第 0 字节: 记有 12 个其它构件, 实有 3 个"},
        {"cannot open /a b/c.tvo: lines section at byte 9: line 1-7 ends at node 1-9, which is not there",
         "轴线段, 第 9 字节: 轴线 1-7 的端点 1-9 不存在"},
        {"/a b/c.tvo: line 12: a corner: 'x' is no whole number", "第 12 行: 角点 'x' 不是整数"},
        {"cannot write /a b/c.tvo: No space left on device", "磁盘已满"},
        {"cannot open /a b/c.tvo: nodes section at byte 5: something else", "节点段, 第 5 字节: 内容不对"},
        {"something else", "其它错误"},
    };
    for (const auto& row : rows) EXPECT_EQ(ReasonInChinese(row.message, "/a b/c.tvo"), row.chinese);
    EXPECT_EQ(MessageInChinese("cannot write /a: b/c.play: Permission denied"), "/a: b/c.play: 没有权限");
    EXPECT_EQ(MessageInChinese("std::bad_cast"), "其它错误");
    for (int error = 1; error < 134; ++error)
        if (std::string(std::strerror(error)).find("Unknown") == std::string::npos) {
            EXPECT_FALSE(IsBad(ReasonInChinese(std::strerror(error), "")));
        }
}

TEST(ReasonText, EveryFaultOfAModel) {
    std::ifstream file(TVO_TEST_DATA "/model_before_parts.tvo", std::ios::binary);
    const std::string whole{std::istreambuf_iterator<char>(file), {}};
    ASSERT_GT(whole.size(), 1000u);
    const TvoModelHost host;
    std::mt19937 dice(22);
    std::set<std::string> met;  // kinds of faults, without their numbers
    for (int round = 0; round < 3000; ++round) {
        std::string bytes = whole;
        if (round % 8 == 0) bytes.resize(dice() % bytes.size());
        for (auto left = dice() % 3 + (round % 8 ? 1 : 0); left > 0 && !bytes.empty(); --left)
            bytes[dice() % bytes.size()] = static_cast<char>(dice() % 3 ? dice() : dice() % 4);
        if (round % 4) Reseal(bytes);
        const ModelFile model = TakeApart(bytes);
        auto faults = model.faults;
        if (faults.empty()) faults = PlanModel(model, host).faults;
        for (const ModelFault& fault : faults) {
            const std::string text = ReasonInChinese("cannot open x: " + fault.Text(), "x");
            ASSERT_FALSE(IsBad(text)) << "round " << round << ": " << fault.Text() << " became " << text;
            std::string kind = fault.reason;
            std::erase_if(kind, [](char c) { return c >= '0' && c <= '9'; });
            met.insert(kind);
        }
    }
    EXPECT_GT(met.size(), 20u);
}

TEST(ReasonText, DrawingsAndFields) {
    for (const char* text :
         {"rubbish", "0\nSECTION\n2\nENTITIES\n0\nLINE\n8\n0\n10\n", "0\nSECTION\n2\nHEADER\n9\n$A",
          "0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n", "0\nSECTION\n2\nTABLES\n0\nENDSEC\n", ""}) {
        DXF drawing;
        drawing.Read_Bytes_To_Mem(text);
        EXPECT_FALSE(IsBad(ReasonInChinese(drawing.GetResult().m_strReason, "")))
            << text << ": " << drawing.GetResult().m_strReason;
    }
    const TempFolder folder;
    const std::string path = folder.path + "field.txt",
                      msh = "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n";
    for (const std::string& text :
         {std::string("knot 1 2 3"), std::string("node x 1 2 3"), std::string("node 1 2"),
          std::string("node 99999999999 0 0 1"), std::string("node 1 0 0 1 2 3 4 5 6 7 8 9 10 11"),
          std::string("tri 1 2 3 4"), std::string("$MeshFormat\n5 0 8"), std::string("$MeshFormat\n2.2 1 8"),
          std::string("$Nodes\n"), msh + "x", msh + "$Nodes\n3\n1 0 0", msh + "$Nodes\n1\n1 0 0 0 0",
          msh + "$Elements\n1\n", msh + "$Elements\n1\n1 2 x", msh + "$NodeData\n",
          msh + "$Nodes\n0\n$End"}) {
        std::ofstream(path) << text;
        CChang field;
        try {
            ReadFieldFile(path, field);
        } catch (const DataFailure& failure) {
            EXPECT_FALSE(IsBad(ReasonInChinese(failure.what(), path)))
                << failure.what() << " became " << ReasonInChinese(failure.what(), path);
            continue;
        }
        ADD_FAILURE() << "was read: " << text;
    }
    std::remove(path.c_str());
}
