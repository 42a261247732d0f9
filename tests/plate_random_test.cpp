// Random edits of a net with plates, the library beside the plain oracle, and what holds after any of them.
#include <gtest/gtest.h>

#include "plate_edits.h"

namespace {

struct Kind {
    const char* name;
    Ground ground;
    bool arcs;
};
constexpr Kind kOctants{"eight directions", Ground::Octants, false}, kLattice{"lattice", Ground::Lattice, false},
    kLatticeArcs{"lattice with arcs", Ground::Lattice, true}, kFree{"free", Ground::Free, false}, kFreeArcs{"free with arcs", Ground::Free, true};

std::string Thorns(CPlateNet& net, const auto& isCi) {
    std::set<int> thorns;
    for (CGjNetLine* l : LinesOf(net))
        if (isCi(l)) thorns.insert(net.m_birth[l->get_m_dwGouJianID()]);
    std::string text;
    for (int n : thorns) text += std::to_string(n) + " ";
    return text;
}

std::string ThornsByLibrary(CPlateNet& net) {
    CWeiBan walker;
    walker.SetData(&net, nullptr);
    walker.PrepareData();
    return Thorns(net, [&](CGjNetLine* l) { return walker.IsCi(l) != 0; });
}

std::string ThornsByOracle(CPlateNet& net) {
    literal::Walker walker(net);
    walker.PrepareData();
    return Thorns(net, [&](CGjNetLine* l) { return walker.IsCi(l); });
}

// Where two nets that were edited alike differ; empty when nowhere.
std::string Differ(CPlateNet& a, CPlateNet& b) {
    const auto differ = [](const char* what, const std::string& x, const std::string& y) {
        return x == y ? std::string() : std::string(what) + ", library:\n" + x + "\noracle:\n" + y;
    };
    for (const std::string& fault :
         {differ("net", Dump(a, false), Dump(b, false)), differ("thorns", ThornsByLibrary(a), ThornsByOracle(a)),
          differ("plates", ShowPlates(a), ShowPlates(b)), differ("ways", ShowWays(a), ShowWays(b)),
          differ("log", std::to_string(a.LogLength()), std::to_string(b.LogLength())), a.m_fault, b.m_fault})
        if (!fault.empty()) return fault;
    return "";
}

}  // namespace

TEST(PlateRandom, LibraryAgreesWithTheOracle) {
    int plates = 0, edits = 0;
    for (const Kind& kind : {kOctants, kLattice, kLatticeArcs, kFree, kFreeArcs})
        for (unsigned round = 0; round < 14; ++round) {
            CPlateNet fast, plain;
            plain.m_bLiteral = true;
            PlateEditor editor(fast, kind.ground, kind.arcs, 100 + round);
            Dice& dice = editor.GetDice();
            std::string told;
            const auto both = [&](const auto& f) {
                for (CPlateNet* net : {&fast, &plain}) {
                    net->BeCurrent();
                    f(*net);
                }
            };
            both([&](CPlateNet& net) {
                net.SetSteps(1000);
                net.m_bRefuseOuter = round % 3 != 0;
                net.m_bWeiBanWholeNet = round % 8 != 7;
            });
            for (int step = 0; step < 40; ++step, ++edits) {
                const int what = dice.Pick(40);
                if (what == 0) {
                    told += "form\n";
                    both([](CPlateNet& net) { net.Start(); net.Form(); });
                } else if (what <= 2) {
                    told += "undo\n";
                    both([](CPlateNet& net) { net.Undo(); });
                } else if (what == 3) {
                    told += "redo\n";
                    both([](CPlateNet& net) { net.Redo(); });
                } else if (what == 4) {  // an edit that nobody bracketed
                    const std::string text = editor.One();
                    told += "bare " + text + "\n";
                    both([&](CPlateNet& net) { Build(net, "start;" + text); });
                } else if (what <= 6 && !fast.Plates().empty()) {
                    const int at = dice.Pick(static_cast<int>(fast.Plates().size()));
                    const std::string place = Show(fast, fast.Plates()[static_cast<std::size_t>(at)]);
                    told += "load " + place + "\n";
                    both([&](CPlateNet& net) {
                        net.Start();
                        for (CMianGouJian* plate : net.Plates())
                            if (Show(net, plate) == place) {
                                net.AddLoad(plate, step);
                                break;
                            }
                    });
                } else {
                    const std::string text = editor.Batch();
                    told += text + "\n";
                    both([&](CPlateNet& net) { net.Edit(text); });
                }
                ASSERT_EQ(Differ(fast, plain), "") << kind.name << ", round " << round << ", step " << step << "\n" << told;
            }
            plates += static_cast<int>(fast.Plates().size());
        }
    EXPECT_GT(plates, 400) << "the test has lost its point";
    EXPECT_GT(edits, 2500);
}
