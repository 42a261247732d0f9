// CGjNetNode: a node of the axis net.
#pragma once
#include "model/goujian.h"

class CBinaryStar;
class CStar;

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
    // Text and binary form. The text has the coordinates, and its reader leaves those of the object as they are; the
    // binary form gives them back. 0 for a wrong key line and at the end of the file. Type byte 1 and status 0
    // afterwards, whatever was read.
    int SaveData(std::FILE* file) override;
    int LoadData(std::FILE* file) override;
    int WriteBinary(std::FILE* file) override;
    int ReadBinary(std::FILE* file) override;
    CFPoint GetSortPoint() override { return {m_fX, m_fY, 0}; }

    float m_fX = 0;    // model units
    float m_fY = 0;
    float m_fZ = 0;    // copied, never used by the net
    CFRect m_rcBound;  // square of half side 10 about the point, from OnCalcParameters

private:
    friend class CGridDataBase;
    friend class CWalkNet;
    std::uint32_t m_nWalk = 0;  // note of a walk over the net; means nothing by itself
    friend class CStarMap;
    // The data base's entries for this node. They belong to the object: a copy has none.
    CStar* m_pStar = nullptr;              // the node's star, owned by m_mapStar
    CBinaryStar* m_pFirstPair = nullptr;   // chain of the pairs that begin here, owned by m_mapBinaryStar
};
