// CGjNetNode: a node of the axis net.
#pragma once
#include "model/goujian.h"
#include "net/star.h"

/// A point of the net where lines meet. It holds its place alone; which lines meet there is known to the data
/// base. Within one storey no two nodes stand nearer than the net tolerance. It paints itself.
class CGjNetNode : public CGouJianEx {
public:
    CGjNetNode() { m_bSelfDraw = 1; }
    CGjNetNode(const CGjNetNode& other) : CGouJianEx(other) { *this = other; }
    CGjNetNode& operator=(const CGjNetNode& other);
    ~CGjNetNode() override = default;

    int IsPhysicalGouJian() override { return 1; }
    CFRect GetFrect() override { return m_rcBound; }
    void OnCalcParameters() override;
    CFPoint GetCentroid() override { return {m_fX, m_fY, 0}; }
    int DrawGraph(CDrawGraph* g) override;
    void GetDrawInfo(unsigned char mode, char kind, unsigned long& colour, int& width) override;
    int Draw(CDC* dc, CFCoor* coor) override;
    int QueryBasicType() override { return kBasicNode; }
    CFPoint GetSortPoint() override { return {m_fX, m_fY, 0}; }

    float m_fX = 0;    // model units
    float m_fY = 0;
    float m_fZ = 0;    // copied, never used by the net
    CFRect m_rcBound;  // square of half side 10 about the point, from OnCalcParameters

private:
    friend class CGridDataBase;
    // The data base's entries for this node, found here without a look into its maps. They belong to the object:
    // a copy has none.
    CStar* m_pStar = nullptr;              // what m_mapStar holds
    CBinaryStar* m_pFirstPair = nullptr;   // chain of the pairs in m_mapBinaryStar that begin here
};

inline std::size_t CMapHash<CGjNetNode*>::operator()(const CGjNetNode* node) const {
    // Four at a time stay neighbours; longer runs would pile up where two meet.
    const std::uint64_t id = node->get_m_dwGouJianID();
    return (CMapHash<std::uint64_t>::Mix(id >> 2) & ~std::uint64_t{3}) | (id & 3);
}
