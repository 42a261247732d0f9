// Plates under hosts that break the rules: edits without the bracket for longer than the log lasts, steps opened in
// the midst of a bracket, lines put in by hand, numbers that are none. What counts is that nothing freed is ever
// named (the sanitizer build sees to that) and nothing hangs.
#include <gtest/gtest.h>

#include <limits>

#include "plate_edits.h"

namespace {

// Reads all that plates and ways name.
long ReadAll(CPlateNet& net) {
    long sum = 0;
    for (CMianGouJian* plate : net.Plates()) {
        for (CGjNetLine* line : plate->m_arrBoundery)
            if (line) sum += line->get_m_dwGouJianNO();
        for (CGjNetNode* node : plate->m_arrVertex)
            if (node) sum += std::isfinite(node->m_fX);
        for (CGjNetLine* line : plate->m_arrXingZhuangLine) sum += line->m_nArc;
        for (const CGjXingZhuangBian& side : plate->m_arrXingZhuangBian)
            for (const CJainTuBanBian& bian : side.m_arrBian)
                if (bian.m_pNetLine) sum += bian.m_pNetLine->m_nArc;
        CArray<CMianGouJian*> others;
        sum += net.GetBanAround(plate, others) + plate->HasWholeBorder() + net.GetPlateInPlate(plate, others, nullptr);
    }
    net.m_mapPlateWay.ForEach([&](CGjNetLine* line, CPlateWay* way) {
        sum += line->m_nArc;
        for (CMianGouJian* plate : way->m_arrPlate) sum += plate->get_m_dwGouJianNO();
    });
    return sum;
}

void UndoAndRedoAll(CPlateNet& net) {
    while (net.CanUndo()) net.Undo(), ReadAll(net);
    while (net.CanRedo()) net.Redo(), ReadAll(net);
}

constexpr const char* kTwoRooms = "0,0 - 8000,0; 8000,0 - 8000,6000; 0,6000 - 8000,6000; 0,0 - 0,6000; 4000,0 - 4000,6000";

}  // namespace

TEST(PlateHostile, LinesOutlivedByTheirPlates) {
    for (const bool ownStep : {true, false})      // the bracket ends in a step of its own, whose first record drops an old one
        for (int steps = 44; steps <= 52; ++steps) {
            SCOPED_TRACE(testing::Message() << steps << " steps");
            CPlateNet net;
            net.Edit(kTwoRooms);
            ASSERT_EQ(net.Plates().size(), 2u);
            Build(net, "start; delete 4000,3000");  // nobody tells the plates
            for (int i = 0; i < steps; ++i) Build(net, "start; " + std::to_string(20000 + 1000 * i) + ",0");
            if (ownStep) net.Start();
            ReadAll(net);
            net.Complete();
            ReadAll(net);
            // The line was entered among those removed, so that both rooms go.
            EXPECT_EQ(net.Plates().size(), 1u);
            EXPECT_EQ(WaysHold(net), "");
            UndoAndRedoAll(net);
            EXPECT_EQ(net.Plates().size(), 1u);
        }
}

TEST(PlateHostile, BracketsForgottenAndMisplaced) {
    for (unsigned round = 0; round < 60; ++round) {
        SCOPED_TRACE(testing::Message() << "round " << round);
        CPlateNet net;
        net.m_bRefuseOuter = round % 2 == 0;
        net.m_bWeiBanWholeNet = round % 7 != 6;
        if (round % 3 == 0) net.SetSteps(3 + static_cast<int>(round % 5));  // steps drop off the log all the time
        PlateEditor editor(net, round % 4 ? Ground::Octants : Ground::Lattice, round % 4 == 0, 900 + round);
        Dice& dice = editor.GetDice();
        net.BeCurrent();
        for (int step = 0; step < 120; ++step) {
            switch (dice.Pick(14)) {
                case 0: net.Undo(); break;
                case 1: net.Redo(); break;
                case 2: for (int k = dice.Pick(20); k > 0; --k) net.Undo(); break;
                case 3: while (net.CanRedo()) net.Redo(); break;
                case 4: net.Complete(); break;
                case 5: net.Start(); net.Complete(); break;
                case 6: net.PrepareDPC(); break;
                case 7: net.Start(); net.Form(); break;
                case 8: net.Edit(editor.Batch()); break;
                case 9: {  // a line, or one that left, is to be looked at again
                    const auto plates = net.Plates();
                    if (plates.empty()) break;
                    for (CGjNetLine* line : plates[static_cast<std::size_t>(dice.Pick(static_cast<int>(plates.size())))]->m_arrBoundery)
                        if (line) dice.Pick(2) ? net.InsertIntoBanBian(line) : net.RemoveFromBanBian(line);
                    break;
                }
                default: Build(net, "start;" + editor.One()); break;
            }
            ReadAll(net);
        }
        net.Complete();
        UndoAndRedoAll(net);
        // A run over all puts everything right.
        net.m_bWeiBanWholeNet = 1;
        net.Start();
        net.Form();
        EXPECT_EQ(WaysHold(net), "");
        EXPECT_EQ(net.m_fault, "");
    }
}

TEST(PlateHostile, LinesPutInByHand) {
    const float nan = std::numeric_limits<float>::quiet_NaN(), inf = std::numeric_limits<float>::infinity();
    for (unsigned round = 0; round < 60; ++round) {
        SCOPED_TRACE(testing::Message() << "round " << round);
        CPlateNet net;
        net.m_bRefuseOuter = round % 2 == 0;
        PlateEditor editor(net, Ground::Octants, false, 1900 + round);
        Dice& dice = editor.GetDice();
        for (int step = 0; step < 40; ++step) {
            net.BeCurrent();
            net.Start();
            net.PrepareDPC();
            const auto nodes = NodesOf(net);
            const auto any = [&] { return nodes[static_cast<std::size_t>(dice.Pick(static_cast<int>(nodes.size())))]; };
            const int what = nodes.empty() ? 9 : dice.Pick(10);
            if (what < 3) {  // from a node to itself, two of which may share the node
                CGjNetNode* node = any();
                net.__AddNetLineDirect(net.CreateNetLineObj(node, node, what != 0, -170, 1));
            } else if (what < 5) {  // again and again between the same two
                CGjNetNode *a = any(), *b = any();
                for (int k = 1 + dice.Pick(3); k > 0; --k) net.__AddNetLineDirect(net.CreateNetLineObj(a, b, dice.Pick(2), -30, 1));
            } else if (what == 5) {
                const float odd[] = {nan, inf, -inf, 1e30f, 3.4e38f, 1e-40f};
                const float x = odd[dice.Pick(6)], y = dice.Pick(2) ? odd[dice.Pick(6)] : 1000;
                CGjNetNode* node = net.CreateNetNodeObj(x, y);
                net.__AddNetNodeDirect(node);
                for (int k = 0; k < 2; ++k) net.__AddNetLineDirect(net.CreateNetLineObj(any(), node, k, -45, 1));
            } else {
                Build(net, editor.One());
            }
            net.Complete();
            ReadAll(net);
            ASSERT_EQ(WaysHold(net), "");
        }
        net.Start();
        net.Form();
        ASSERT_EQ(WaysHold(net), "");
        UndoAndRedoAll(net);
    }
}

TEST(PlateHostile, AnEmptyBatchChangesNothing) {
    CPlateNet net;
    net.Edit(kTwoRooms);
    const std::string before = ShowPlates(net) + ShowWays(net);
    const int log = net.LogLength();
    net.Start();
    net.PrepareDPC();
    net.Complete();
    EXPECT_EQ(ShowPlates(net) + ShowWays(net), before);
    EXPECT_EQ(net.LogLength(), log);
}
