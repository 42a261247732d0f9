// CGjNetLine: a line of the axis net, straight or an arc.
#pragma once
#include "geometry/fline.h"
#include "geometry/fshape.h"
#include "geometry/fshoot.h"
#include "model/goujian.h"

class CGjNetNode;
class CGridDataBase;
class CTvoViewKernel;

/// A line between two nodes, which it borrows. Its geometry has one source of truth: the two nodes, m_nArc and
/// m_fBulge. Everything else is a cache that OnCalcParameters fills once, so that intersection, tracing and
/// painting read plain fields. There is no edit in place: a changed line is a new line. A host that moves a
/// node clears m_bParamCalculated of its lines before ReGen.
///
/// Lines are made, broken and merged by CGridDataBase alone. A temporary one, from ConstructNetLineObject or
/// GetNetLineFromShoot, owns its two nodes until DeleteNetLineObject destroys all three.
class CGjNetLine : public CGouJianEx {
public:
    /// Unfinished on purpose: radius 1000 and end direction 90 stand until the first calculation.
    CGjNetLine() = default;
    CGjNetLine(const CGjNetLine&) = default;  // the copy shares the nodes
    CGjNetLine& operator=(const CGjNetLine&) = default;
    ~CGjNetLine() override = default;

    int IsPhysicalGouJian() override { return 1; }
    void OnCalcParameters() override;
    /// The arc centre fields; for a straight line what construction left in them. Meant.
    CFPoint GetCentroid() override { return {m_fCenterX, m_fCenterY, 0}; }
    int DrawGraph(CDrawGraph* g) override;
    void GetDrawInfo(unsigned char mode, char kind, unsigned long& colour, int& width) override;
    int QueryBasicType() override { return kBasicLine; }
    // Text and binary form. The readers find both nodes in the current data base; 0 when one is missing, for a wrong
    // key line and at the end of the file. Type byte 2 and status 0 afterwards, whatever was read.
    int SaveData(std::FILE* file) override;
    int LoadData(std::FILE* file) override;
    int WriteBinary(std::FILE* file) override;
    int ReadBinary(std::FILE* file) override;
    CFPoint GetSortPoint() override { return {m_fMidX, m_fMidY, 0}; }

    // --- the caches ---
    void GetMidPoint(float& x, float& y) const { x = m_fMidX; y = m_fMidY; }
    void GetCenterPoint(float& x, float& y) const { x = m_fCenterX; y = m_fCenterY; }
    float GetR() const { return m_fR; }
    void GetDirectionAngle(float& start, float& end) const { start = m_fStartDir; end = m_fEndDir; }  // radians
    /// Direction along the line, away from the node, in degrees: of the start node, or else of the end.
    float GetTangentAngle(const CGjNetNode* n) const { return n == m_pStartNode ? m_fStartTangent : m_fEndTangent; }
    float GetLength() const { return m_fLength; }
    float GetChordLength() const { return m_fChordLength; }
    void GetStartEndPoint(float& sx, float& sy, float& ex, float& ey) const {
        sx = m_fStartX; sy = m_fStartY; ex = m_fEndX; ey = m_fEndY;
    }
    CFPoint GetStartPoint() const { return {m_fStartX, m_fStartY, 0}; }
    CFPoint GetEndPoint() const { return {m_fEndX, m_fEndY, 0}; }
    CFShape GetShape() const { return m_cShape; }

    // --- questions ---
    /// Walking away from the node follows the line's sense (TongXiang: same direction).
    int IsTongXiang(const CGjNetNode* n) const { return n == m_pStartNode; }
    int IsVertical() const;    // |dx| of the nodes below 0.1, whatever the length
    int IsHorizontal() const;  // the same in y
    /// The line as one element of a chain from its start (0) or its end (else); reversing flips the bulge.
    CFShoot GetFShoot(int reverse) const;
    /// A copy with a fresh identity of the current data base, in no store. m_nArc stays 0, so that the clone of
    /// an arc reads as straight until the caller sets it.
    CGjNetLine* Clone();

    int m_nArc = 0;                      // 0 straight, 1 arc
    CGjNetNode* m_pStartNode = nullptr;  // borrowed
    std::uint32_t m_dwStartNO = 0;       // display number of the start node, for the files
    std::uint32_t m_dwStartID = 0;       // identity of the start node, for the files
    CGjNetNode* m_pEndNode = nullptr;    // borrowed
    std::uint32_t m_dwEndNO = 0;
    std::uint32_t m_dwEndID = 0;
    float m_fBulge = 0;        // arc: half of the included angle, degrees; negative runs anticlockwise from start to
                               // end, the only sense that the net creates
    float m_fMidX = 0;         // middle of the line
    float m_fMidY = 0;
    float m_fCenterX = 0;      // arc centre
    float m_fCenterY = 0;
    float m_fStartDir = 0;     // radians; arc: from the centre to start and end, the end not below the start;
    float m_fEndDir = 90.0f;   // straight: both the direction of the chord
    float m_fR = 1000.0f;      // radius
    float m_fStartTangent = 0; // degrees, along the line away from that end; below 360, may be negative
    float m_fEndTangent = 0;
    float m_fLength = 0;       // along the line
    float m_fStartX = 0;       // cached node coordinates
    float m_fStartY = 0;
    float m_fEndX = 0;
    float m_fEndY = 0;
    float m_fChordLength = 0;  // straight distance from start to end
    int m_nSpare = 0;          // copied, never read
    CFShape m_cShape;          // the line as a shape
    int m_bFullCircle = 0;     // set for the synthetic side of a plate that is a whole circle; copied, never saved

protected:
    void __CalcStartEndPoint();
    void __CalcCenterPoint();
    void __CalcR();
    void __CalcDirectionAngle();
    void __CalcMidPoint();
    void __CalcLength();
    void __CalcTangentAngle();
    void __CalcShape();

private:
    friend class CWalkNet;
    std::uint32_t m_nWalk = 0;  // note of a walk over the net; means nothing by itself
    void DrawDirection(CDrawGraph* g) const;
};

// --- lines off the net; each owns its two nodes until DeleteNetLineObject -----------------------------------

/// Identities come from two counters of the process, apart from those of any data base. A straight line within
/// 0.01 of vertical points upwards.
CGjNetLine* ConstructNetLineObject(CFPoint a, CFPoint b, int arc, float bulge);
CGjNetLine* ConstructNetLineObject(CFPLine line);
CGjNetLine* ConstructNetLineObject(CFPArc arc);
/// As these two, with nodes and line made by the data base, from whose counters they draw; not in its store.
CGjNetLine* ConstructNetLineObject(CGridDataBase* db, CFPLine line);
CGjNetLine* ConstructNetLineObject(CGridDataBase* db, CFPArc arc);
/// One element of a chain of vertices, turned so that straight lines run to the right (or up) and arcs
/// anticlockwise. It has no identity.
CGjNetLine* GetNetLineFromShoot(const CFShoot& a, const CFShoot& b);
/// Destroys both nodes and the line.
void DeleteNetLineObject(CGjNetLine* line);

/// Paints a line on the device with the pen that is selected.
void DrawNetLine(CTvoViewKernel* view, CDC* dc, CGjNetLine* line);
