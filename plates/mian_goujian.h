// CMianGouJian: a plate, the face of the net inside a closed walk of lines.
#pragma once
#include <cstdio>

#include "geometry/fregion.h"
#include "model/goujian.h"
#include "plates/gj_xing_zhuang_bian.h"
#include "platform/domain_edge.h"

class CGjNetLine;
class CGjNetNode;

/// A surface component ("MianGouJian"; in files and function names also "JianTuBan" and "Ban"). It borrows the
/// net lines on its border, in two levels: shape sides, and in each the lines of one straight side or one arc.
/// From these it derives its geometry, once: a plate that has to change is replaced by another. Its lines may leave the
/// net before it does; the log keeps them, and tells the plate before it frees one.
///
/// Plates come from CGridDataBase::CreateBanObject or from a file, the lines first. They have no picture of
/// their own.
class CMianGouJian : public CGouJianEx {
public:
    CMianGouJian() = default;
    CMianGouJian(const CMianGouJian&) = delete;  // it owns; CopyData takes over another one's geometry
    CMianGouJian& operator=(const CMianGouJian&) = delete;
    ~CMianGouJian() override;

    int IsPhysicalGouJian() override { return 1; }
    CFRect GetFrect() override { return m_rect; }
    void OnCalcParameters() override { CalcGeographicData(); }
    CFPoint GetCentroid() override { return {m_fCenterX, m_fCenterY, 0}; }
    int QueryBasicType() override { return kBasicPlate; }
    /// Text: the border alone. The geometry is calculated after reading.
    int SaveData(std::FILE* file) override;
    /// 0 for a wrong key line, an impossible count, a file that ends, and a border that doesn't close. Lines that are
    /// missing are not reported: the plate then has no geometry (see HasWholeBorder). Type byte 3 and status 0
    /// afterwards, whatever was read.
    int LoadData(std::FILE* file) override;
    int WriteBinary(std::FILE* file) override;
    /// As LoadData. When a line is missing the file is left inside the block: who goes on must know where the next begins.
    int ReadBinary(std::FILE* file) override;
    CFPoint GetSortPoint() override { return GetCentroid(); }
    /// Takes over another plate's border and figures, all but what CGouJianEx holds (m_bParamCalculated too) and the
    /// outline as edges. The synthetic lines are made anew.
    virtual void CopyData(CMianGouJian* source);

    /// Derives everything from the border, unless m_bParamCalculated says that it was done. A border that isn't whole
    /// gives nothing.
    void CalcGeographicData();
    /// Frees the edges and the synthetic lines. Their count and the directions stay.
    void _FreeMemory();
    void GetMidPoint(float& x, float& y) const {
        x = m_fCenterX;
        y = m_fCenterY;
    }
    float GetArea() const { return m_fArea; }
    float GetZhouChang() const { return m_fZhouChang; }
    CFRegion GetFregion() const { return m_region; }
    // Each replaces the array's content; the count.
    int GetBoundery(CArray<CGjNetLine*>& lines) const;
    int GetBounderyByXingZhuangBian(CArray<CGjNetLine*>& lines) const;
    int GetVertex(CArray<CGjNetNode*>& nodes) const;

    int BorderedBy(CGjNetLine* line) const;          // this very line is on the border
    int HasCommonBorder(CMianGouJian* other) const;  // a border line is on both
    /// A line of the same kind lies on a border line, so that the answer outlives a breaking of the net. For two
    /// arcs it is the border line that has to lie on the line. Meant.
    int HasThisBorder(CGjNetLine* line) const;
    /// Both ends of the line are vertices; also one end alone, where the border passes it twice.
    int StrideNetNode(CGjNetLine* line) const;
    int Contain(CMianGouJian* other) const;  // the closed areas share a point
    /// Every border line is there, and the border closes. False for a plate read from a file that doesn't fit
    /// the net; such a plate has empty figures.
    bool HasWholeBorder() const;
    /// A border line is about to be freed. The plate keeps its figures, and forgets its lines, vertices and synthetic
    /// lines.
    void LetGoOfLines();
    bool HasLostLines() const;  // a side has no line

    int m_nXingZhuangBian = 0;                       // number of shape sides
    CArray<CGjXingZhuangBian> m_arrXingZhuangBian;   // in walk order
    float m_fArea = 0;
    float m_fCenterX = 0;  // centroid
    float m_fCenterY = 0;
    CFRect m_rect;         // extent of the region
    CFRegion m_region;     // outline, one vertex per border line
    float m_fZhouChang = 0;                 // perimeter (ZhouChang): the lengths of the border lines, summed
    CArray<CGjNetLine*> m_arrBoundery;      // border lines in walk order; borrowed
    CArray<int> m_arrBounderyDir;           // 1 along the line, 0 against it
    CArray<CGjNetNode*> m_arrVertex;        // node at which the walk enters each line; borrowed
    CArray<CGjNetLine*> m_arrXingZhuangLine;  // a synthetic line per shape side, not in the net; owned
    CArray<int> m_arrXingZhuangDir;         // the walk along each of these
    int m_nDomainEdge = 0;                  // entries in m_pDomainEdge
    CDomainEdge* m_pDomainEdge = nullptr;   // the outline as edges; owned

protected:
    // The steps of CalcGeographicData, in this order.
    void __FormDomainEdge();
    void __CalcCenterPoint();
    void __CalcArea();
    void __CalcRegion();
    void __CalcRect();
    void __CalcZhouChang();
    void __CalcGeographic();

private:
    friend class CGridDataBase;
    void BorderChanged();
    CArray<CGjNetLine*> m_arrEntered;  // lines under which the data base holds the plate; some may be gone from the border
    enum class BorderState { kWhole, kOpen, kLineMissing, kEmpty };
    BorderState StateOfBorder() const;
    template <class ReadShape>
    int ReadBorder(int count, ReadShape readShape);
    void ForgetBorder();
    void DropSideLines();
};
