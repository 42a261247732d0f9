// Plates the plain way: an oracle for the walks over the net and for the plates' following of edits. It keeps a
// private copy of every star, strips it by passes over the whole of it, works each angle out anew and compares
// every plate with every other. Slow, and with nothing in common with what it judges but the net, the plate class
// and the region's sense.
#pragma once
#include <map>
#include <memory>
#include <vector>

#include "net/grid_data_base.h"
#include "plates/mian_goujian.h"
#include "plates/plate_way.h"

namespace literal {

using Plates = std::vector<CMianGouJian*>;
using PlateMap = std::map<std::uint32_t, CMianGouJian*>;  // by identity

/// One run over a net: elements in, then the thorns or the walks.
class Walker {
public:
    explicit Walker(CGridDataBase& db) : m_db(db) {}
    void AddElement(CGjNetLine* line);
    void PrepareData();
    void DoWeiBan();
    bool IsCi(CGouJianEx* line) const { return m_thorns.count(line->get_m_dwGouJianID()) != 0; }

    bool CanBorder(CGjNetLine* line) const { return Counts(line) && !IsCi(line); }

    Plates m_plates, m_outer;                           // results, the caller's
    std::map<std::uint32_t, CGjNetLine*> m_elements;
    std::map<std::uint32_t, CGouJianEx*> m_thorns;

private:
    struct Walk;
    bool Counts(CGjNetLine* line) const;
    void CopyStars();
    bool StripOneBranch();
    CStar* StarAt(CGjNetNode* node);
    int BranchingEnds(CGjNetLine* line);
    CGjNetLine* NextLine(CGjNetNode* node, CGjNetLine* from);
    void WalkFrom(CGjNetLine* element, int& plateNumber, int& outerNumber);

    CGridDataBase& m_db;
    std::map<CGjNetNode*, std::unique_ptr<CStar>> m_stars;  // never walked in an order that decides anything
    std::map<CGjNetLine*, int> m_side;                      // 0, 1, -1 or 2
};

void DoWeiBan(CGridDataBase& db);
void CompleteDPC(CGridDataBase& db);
int CombineMianGouJian(CGridDataBase& db, const Plates& in, Plates& out, unsigned char type, unsigned long tag);

bool IsSamePlate(CMianGouJian* a, CMianGouJian* b);  // within 2.0 and 1 percent
PlateMap StridePlates(CGridDataBase& db, CGjNetLine* line, const Walker& thorns);
PlateMap BanAround(CGridDataBase& db, CMianGouJian* plate);
CMianGouJian* EmbracingPlate(CGridDataBase& db, CMianGouJian* plate);
Plates PlatesInPlate(CGridDataBase& db, CMianGouJian* plate);

}  // namespace literal
