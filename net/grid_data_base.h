// CGridDataBase: the axis net in the component store.
#pragma once
#include <cstdint>
#include <functional>
#include <unordered_set>
#include <vector>

#include "model/tvo_data_base.h"
#include "net/break_node.h"
#include "net/gj_net_line.h"
#include "net/gj_net_node.h"
#include "net/line_inter.h"
#include "net/star_map.h"

class CMianGouJian;
class CPlateWay;
class CWeiBan;

/// A data base that keeps its net clean: ends snap to nodes, no line is stored twice, lines that cross are
/// broken at the crossing, and collinear pieces merge again where the host agrees. Nodes and lines are ordinary
/// components; every operation is a sequence of AddGouJian and DeleteGouJian, so undo needs nothing of its own.
/// The caller opens the step with Start.
///
/// The stars follow from OnAddGouJian and OnDelGouJian alone, which add, delete, undo and redo all pass. Hosts
/// derive from this class and override the operations marked "host".
///
/// A refused operation gives null or 0 and reports nothing. Where several components could be taken, the one
/// with the lowest identity is.
class CGridDataBase : public CTvoDataBase {
public:
    CGridDataBase();
    ~CGridDataBase() override;
    void OnInitialize() override;
    void OnDestroyData() override;
    int OnQueryDataDesc() override { return 0; }
    void OnAddGouJian(CGouJianEx* obj) override;
    void OnDelGouJian(CGouJianEx* obj) override;

    // --- hooks, in fixed order ---
    /// Host: makes a node of its own class, with an identity, not in the store.
    virtual CGjNetNode* CreateNetNodeObj(float x, float y);
    /// Host: makes a line of its own class, calculated, not in the store. With `normalize` a straight line
    /// within 0.1 of vertical points upwards.
    virtual CGjNetLine* CreateNetLineObj(CGjNetNode* a, CGjNetNode* b, int arc, float bulge, int normalize);
    /// Host: appends the types whose components are lines to walk from.
    virtual void QueryWeiBanType(CArray<unsigned char>& types) { types.Add(GJLX_NET_LINE); }
    /// Host: does the line count as a border? Here all do; while combining only those of m_mapCombineLine.
    virtual int CanJionWeiBan(CGjNetLine* line);
    /// Host: the type of plates that follow the net; while combining m_byteCombineType.
    virtual unsigned char QueryMainGouJianType();
    /// Host: makes a plate of its own class, with an identity, not in the store. Type 0 is a plate, 1 an outer
    /// contour, which is a plate here too. Null refuses it.
    virtual CMianGouJian* InstanceMianGouJian(int type);
    virtual void AddMianGouJian(CMianGouJian* plate);
    /// Host: the component that hangs on a plate, or null.
    virtual CGouJianEx* QueryGouJianDependentOnMianGouJian(CMianGouJian*) { return nullptr; }
    virtual void DeleteGouJianDependentOnMianGouJian(CMianGouJian*) {}
    /// Host: hangs on the replacement what hung on the old plate, which is out of the store by now, and alive.
    virtual void CreateGouJianDependentOnMianGouJian(CMianGouJian* /*old*/, CGouJianEx* /*dependent*/, CMianGouJian* /*replacement*/) {}
    /// Host: may the line break others and be broken? Here: it stands on the current storey.
    virtual int CanBreakNetLine(CGjNetLine* line) { return line->m_nCeng == m_nCurCeng; }
    /// Breaks a line and all that it crosses at the crossings; overlaps are rewritten.
    virtual void BreakNetLine(CGjNetLine* line);
    /// Host: appends the components that ride on the line. Returns whether the array holds anything.
    virtual int QueryGouJianOnNetLine(CGjNetLine*, CArray<CGouJianEx*>& riders) { return !riders.IsEmpty(); }
    /// Host: makes riders on a new part from those of the old line. Both the old line and its riders are out of
    /// the store by now, and alive.
    virtual void CreateGouJianAfterBreak(CGjNetLine* /*old*/, CGjNetLine* /*part*/, CArray<CGouJianEx*>& /*riders*/) {}
    virtual void CreateGouJianAfterMerge(CGjNetLine* /*merged*/, CGjNetLine* /*a*/, CGjNetLine* /*b*/,
                                         CArray<CGouJianEx*>& /*ridersA*/, CArray<CGouJianEx*>& /*ridersB*/, int /*mode*/) {}
    /// Host: may two lines that meet at a node become one? Here never.
    virtual int CanMergeNetLineTogetherWithGouJian(CGjNetLine*, CArray<CGouJianEx*>&, CGjNetLine*, CArray<CGouJianEx*>&,
                                                   int /*mode*/, CGjNetNode* /*shared*/) {
        return 0;
    }
    /// Host: may a node go? Here never.
    virtual int IsIndependentNetNode(CGjNetNode*) { return 0; }
    /// Centroids nearer than fDist, and areas that differ by less than the part fArea of the smaller.
    virtual int IsSamePlate(CMianGouJian* a, CMianGouJian* b, float fDist, float fArea);
    /// The same outline, walked the same way round; it may start at another vertex.
    virtual int IsSamePlateByBorder(CMianGouJian* a, CMianGouJian* b);

    // --- nodes ---
    /// The node at that place, made if need be. One within the net tolerance is returned as it stands.
    CGjNetNode* AddNetNode(float x, float y);
    /// A node of the current storey nearer than the net tolerance, or null.
    CGjNetNode* IsDuplicateNetNode(float x, float y);
    CGjNetNode* IsDuplicateNetNode(CGjNetNode* node);
    void DeleteNetNode(CGjNetNode* node);  // if IsIndependentNetNode says so
    void DeleteIndependentNetNode();       // all of them

    // --- lines; with m_bAutoBreak set, Add... gives null for a line that it made and broke ---
    /// Snaps both ends to nodes and adds the line (arc 0 or 1, bulge in degrees). Null with m_bLineDegenerate
    /// when the points are no farther apart than the tolerance or share a node; an equal line is returned with
    /// m_bLineExisted.
    CGjNetLine* AddNetLine(CFPoint p1, CFPoint p2, int arc, float bulge);
    /// AddNetLine without breaking. m_bAutoBreak is 1 afterwards, whatever it was before.
    CGjNetLine* GetNetLine(CFPoint p1, CFPoint p2, int arc, float bulge);
    CGjNetLine* AddArc(CFPoint centre, float r, float start, float end);  // degrees
    /// The arc whose ends are a and b, through c. Null when the three are collinear.
    CGjNetLine* AddArc(CFPoint a, CFPoint b, CFPoint c);
    CGjNetLine* GetArc(CFPoint centre, float r, float start, float end);
    CGjNetLine* GetArc(CFPoint a, CFPoint b, CFPoint c);
    /// Has a straight line point to greater x, or when vertical to greater y; 1 when swapped. Arcs never turn.
    int NormalizeNetNodeBeforeCreation(CGjNetNode*& a, CGjNetNode*& b, int arc);
    /// Deletes lines with their riders, then merges what they had kept apart. Nodes stay.
    void DeleteNetLine(CGjNetLine* line);
    void DeleteNetLine(CArray<CGouJianEx*>& lines);
    /// Destroys a line that was built with its own nodes, off the store.
    void DeleteNetLineObj(CGjNetLine*& line);

    // Straight to the virtual AddGouJian and DeleteGouJian.
    void __AddNetNodeDirect(CGjNetNode* node) { AddGouJian(node); }
    void __AddNetLineDirect(CGjNetLine* line) { AddGouJian(line); }
    void __DeleteNetNodeDirect(CGjNetNode* node) { DeleteGouJian(node); }
    void __DeleteNetLineDirect(CGjNetLine* line) { DeleteGouJian(line); }

    // --- stars ---
    /// The key of an ordered pair of nodes. Different pairs may share one: what is found under it is verified.
    std::int64_t MakeBinaryStar(CGjNetNode* a, CGjNetNode* b);
    /// Empties the array and appends the lines from a to b, then those from b to a. Their number.
    int GetNetLineOnNetNode(CGjNetNode* a, CGjNetNode* b, CArray<CGouJianEx*>& lines);
    /// Appends the lines at a node by ascending identity. Their number; 0 when the node has no star.
    int GetConnectedNetLine(CGjNetNode* node, CArray<CGouJianEx*>& lines);
    void MaintainNetNodeTypes(CGjNetNode* node);
    void MaintainNetLineTypes(CGjNetLine* line);
    void NetNodeMaintain(CGjNetNode* node, int mode);  // mode 1 add, any other delete
    void NetLineMaintain(CGjNetLine* line, int mode);
    void __StarMaintain(CGjNetNode* node, CGjNetLine* line, int mode);
    void __BinaryStarMaintain(CGjNetNode* a, CGjNetNode* b, CGjNetLine* line, int mode);

    // --- intersection ---
    /// How two lines meet, and where; changes nothing. x and y have room for two values each; with a count of
    /// -1 (an overlap) they are not written.
    LINE_INTER_ENUM TestNetLineIntersection(CGjNetLine* l1, CGjNetLine* l2, float* const x, float* const y, int& count, float tol);
    /// A new line against one that stands: appends the crossings and returns 1; or rewrites the net where the
    /// two overlap and returns 0. Then l1 may be gone, and the caller must stop working on it.
    int CalcNetLineInterSection(CGjNetLine* l1, CGjNetLine* l2, CArray<CBreakNode>& breaks);
    int IsDuanPoint(CGjNetLine* l, float x, float y);  // nearer than the net tolerance to an end (Duan)
    /// 0 not on the line, 1 at its start, 2 at its end, 3 in between.
    int IsNodeOnNetLine(float x, float y, CGjNetLine* l, float tol);
    int IsSameNetLine(CGjNetLine* l1, CGjNetLine* l2);
    // Number of points (-1 for an overlap). Each uses up identities for its temporary lines; meant.
    int GetInterPointOfLineSections(CFPLine a, CGjNetLine* b, float* const x, float* const y, float tol);
    int GetInterPointOfLineSections(CFPLine a, CFPLine b, float* const x, float* const y, float tol);
    int GetInterPointOfLineSections(CFPArc a, CGjNetLine* b, float* const x, float* const y, float tol);
    int GetInterPointOfLineSections(CFPArc a, CFPArc b, float* const x, float* const y, float tol);
    int GetInterPointOfLineSections(CFPArc a, CFPLine b, float* const x, float* const y, float tol);
    /// 2 edges meet; 1 a lies inside b; 0 b lies inside a; 3 apart.
    int TestRegionIntersection(CFRegion& a, CFRegion& b);

    // --- breaking and merging ---
    /// Cuts one line at the given points; the array is changed.
    void BreakOneNetLine(CGjNetLine* l, CArray<CFPoint>& points);
    /// The next pair to merge: two lines of the map that meet at a node, and the mode. 1 when found.
    int GetSimilarNetLine(CMap<int, CGjNetNode*>& nodes, CMap<int, CGjNetLine*>& lines, CGjNetLine*& l1, CGjNetLine*& l2,
                          CGjNetNode*& node, int& mode);
    int ConnectedOnNetNode(CMap<int, CGjNetLine*>& lines, CGjNetLine*& l1, CGjNetLine*& l2, CGjNetNode* node);
    int IsSimilarNetLine(CGjNetLine* a, CGjNetLine* b, float tol);  // degrees, for straight lines
    /// The mode (which ends coincide), or 0.
    int CanMergeNetLine(CMap<int, CGjNetNode*>& nodes, CMap<int, CGjNetLine*>& lines, CGjNetLine* l1, CGjNetLine* l2);
    /// Puts one line in the place of two. Null when the two are not similar; also, with both gone, when they
    /// would close a circle.
    CGjNetLine* MergeTowNetLine(CGjNetLine* l1, CGjNetLine* l2, int mode);
    CGjNetLine* GetMergedNetLine(CGjNetLine* l1, CGjNetLine* l2, int mode);  // not stored
    int GetMergedArcData(CGjNetLine* l1, CGjNetLine* l2, int mode, float& startX, float& startY, float& endX, float& endY, float& bulge);

    // --- plates ---
    /// Deletes all plates of the main type, walks the whole net and forms them afresh.
    void DoWeiBan();
    // The bracket about a batch of edits, after which the plates are right again. A new plate that stands where
    // an old one stood (IsSamePlate within 2.0 and 1 percent) takes over its data and what hangs on it.
    void PrepareDPC();   // begins to gather the lines that change
    void CompleteDPC();  // replaces the plates that they touch
    // For hosts that want a line looked at again.
    void InsertIntoBanBian(CGjNetLine* line);
    void RemoveFromBanBian(CGjNetLine* line);  // enters the line among those removed: an insertion too
    void MainGouJianMaintain(CMianGouJian* plate, int op);  // op 1 enters the plate in the ways of its lines, any other removes it
    /// The object and its border of a finished walk; not stored, null when the host refuses it. `type` 0 is a plate,
    /// 1 an outer contour; lines and flags (1 along the line, 0 against it) are rotated so that no side is split.
    CMianGouJian* CreateBanObject(int type, CArray<CGjNetLine*>& lines, CArray<int>& flags, int number);
    CMianGouJian* CreateJianTuBanObject(int type, CArray<CGjNetLine*>& lines, int, CArray<int>& flags, int number) {
        return CreateBanObject(type, lines, flags, number);
    }
    /// Rotates the lines of a walk so that it begins with the first line of a straight side or arc (tol in degrees).
    void AdjustBanBianOrder(CArray<CGjNetLine*>& lines, CArray<int>& flags, float tolerance);
    /// Forms plates of one type from the border lines of others alone; all plates of that type are replaced.
    /// `out` receives those with the tag, which a host's InstanceMianGouJian puts on them. The size of `out`.
    int CombineMianGouJian(CArray<CMianGouJian*>& in, CArray<CMianGouJian*>& out, unsigned char type, unsigned long tag);
    /// A plate of the type (0: of the plate's own) with all the plate's vertices strictly inside, or null. Of several
    /// not always the smallest.
    CMianGouJian* GetEmbracingPlate(CMianGouJian* plate, unsigned char type);
    /// Appends the plates of its type and of those listed (may be null) whose vertices lie strictly inside. The size of `out`.
    int GetPlateInPlate(CMianGouJian* plate, CArray<CMianGouJian*>& out, CByteArray* types);
    int IsPlateInsidePlate(CMianGouJian* outer, CMianGouJian* inner);  // touching from inside counts
    // Each appends and gives the size of `out`.
    int GetBanAround(CMianGouJian* plate, CArray<CMianGouJian*>& out);    // other plates on its lines, by identity
    int GetBounderyPlate(CGjNetLine* line, CArray<CMianGouJian*>& out);  // plates that the line borders
    /// Enters the plates that a new line may cut.
    int GetStridePlate(CGjNetLine* line, CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*>& out);

    CArray<unsigned char> m_aNetNodeTypes;  // node type bytes seen so far
    CArray<unsigned char> m_aNetLineTypes;  // line type bytes seen so far
    int m_bLineSwapped = 0;     // the last AddNetLine exchanged its end points
    int m_bLineDegenerate = 0;  // it made no line, since the ends coincide
    int m_bLineExisted = 0;     // it returned a line that was there
    int m_bCombineMode = 0;     // 1 during CombineMianGouJian
    int m_bAutoBreak = 1;       // AddNetLine breaks the new line at crossings
    int m_bAutoMerge = 1;       // merging after a deletion is allowed
    float m_fAngleTolerance = 0.0017453294f;  // a tenth of a degree, radians
    CStarMap m_mapStar;              // star by node; owned
    CBinaryStarMap m_mapBinaryStar;  // star by key of a pair; owned
    CMap<CGjNetLine*, CPlateWay*> m_mapPlateWay;          // the plates on either side of a line; owned
    CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*> m_mapBanBianInsert;  // lines added since PrepareDPC
    CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*> m_mapBanBianRemove;  // lines deleted since then
    int m_bWeiBanWholeNet = 1;  // 0: walks see the inserted lines alone, and a new line is not tested against regions
    int m_bCombineFilter = 0;   // 1 during CombineMianGouJian: only m_mapCombineLine counts
    unsigned char m_byteCombineType = GJLX_MIAN;  // plate type during combining
    std::uint32_t m_dwCombineTag = 0;             // for the InstanceMianGouJian of a host to put on its new plates
    CMap<unsigned long, unsigned long, CGjNetLine*, CGjNetLine*> m_mapCombineLine;  // the lines that count while combining

private:
    CStar* StarOf(CGjNetNode* node);       // makes it when missing
    void DropStar(CGjNetNode* node);
    CBinaryStar* FindBinaryStar(CGjNetNode* a, CGjNetNode* b);
    void DropBinaryStar(CBinaryStar* star);
    bool HasStraightLine(CGjNetNode* a, CGjNetNode* b);
    CGjNetLine* FindEqualLine(CGjNetNode* a, CGjNetNode* b, int arc, float bulge);
    void LetGoOfNet(CGouJianEx* obj);
    void GatherTouchedPlates(CWeiBan& work, CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*>& touched);
    void VisitPlatesAlong(CGjNetLine* line, CWeiBan& probe, std::unordered_set<CGjNetLine*>& passed,
                          const std::function<void(CGjNetLine*, CMianGouJian*)>& visit);
    void EnterStridden(CMianGouJian* plate, CGjNetLine* line, CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*>& out);
    bool IsStridden(CMianGouJian* plate, CGjNetLine* line);
    void MaintainPlate(CGouJianEx* plate, int op);
    void Withdraw(CMianGouJian& plate);
    void LetGoOfBorder(CGjNetLine* line);
    void LetGoOfPlate(CGouJianEx* plate);
    void DropPlateWays();

    void CollectBreakCandidates(CGjNetLine* line, std::vector<CGouJianEx*>& near);
    void FetchAhead(CGjNetLine* line);
    void FetchRestAhead(CGjNetLine* line);
    void BreakNow(CGjNetLine* line);
    void ReplaceByStraightParts(CGjNetLine* l, CArray<CFPoint>& points, CArray<CGouJianEx*>& riders);
    void ReplaceByArcParts(CGjNetLine* l, CArray<CFPoint>& points, CArray<CGouJianEx*>& riders);
    int CalcStraightPair(CGjNetLine* l1, CGjNetLine* l2, CArray<CBreakNode>& breaks);
    int CalcArcPair(CGjNetLine* l1, CGjNetLine* l2, CArray<CBreakNode>& breaks);
    void AddBreakUnlessEndOfBoth(CGjNetLine* l1, CGjNetLine* l2, float x, float y, CArray<CBreakNode>& breaks);
    void KeepSecondLine(CGjNetLine* l1, const struct NetPiece* pieces, int count);
    void DeleteUnmerged(CGjNetLine* line);
    void MergeAround(CMap<int, CGjNetNode*>& nodes, CMap<int, CGjNetLine*>& lines);

    int m_nBreakDepth = 0;                    // calls of BreakNetLine that stand on the stack
    std::vector<std::uint32_t> m_aPendingBreak;  // lines whose turn comes when the stack has unwound
    std::vector<CGouJianEx*> m_aNear;         // the lines near the one that BreakNetLine is at
    unsigned m_nNodeEdits = 0;                // counts nodes added and removed
    // Plates may outlive their lines, in the store and in the log.
    CMap<CGjNetLine*, CPlateWay*> m_mapGoneWay;  // plates of the log that name a line which left before them; owned
    CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*> m_mapStalePlate;  // plates whose line was freed; next CompleteDPC
};

/// The net data base initialised last, or null: what is read from files finds its nodes there.
extern CGridDataBase* g_pGridDataBase;
