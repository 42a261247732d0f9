// The data base of tvo, the reference host.
#pragma once
#include <algorithm>
#include <cstdint>
#include <functional>
#include <set>
#include <unordered_map>
#include <vector>

#include "net/grid_data_base.h"

class CGridIndexServiceObject;
class CTvoLoad;
class CTvoRider;

/// A net that merges the pieces of a line once nothing meets at the node between them any more, takes nodes without
/// lines for superfluous, and whose plates, once there are any, follow each edit. Outer contours are no plates. A load
/// may hang on a plate; it stays while the plate is replaced by one of the same place and size. Riders may stand on a line;
/// they survive its breaking and merging and go when it goes.
class CTvoHostDataBase : public CGridDataBase {
public:
    void OnDestroyData() override;
    void OnAddGouJian(CGouJianEx* obj) override;
    void OnDelGouJian(CGouJianEx* obj) override;
    using CGridDataBase::DeleteGouJian;
    /// A line takes its riders along, by whatever way it goes.
    int DeleteGouJian(CGouJianEx* obj) override;
    void BeforeUndo(CList<CGouJianEx*>&) override { m_bUndoing = true; }
    void AfterUndo(CList<CGouJianEx*>&) override { m_bUndoing = false; }

    // --- showing ---
    /// With m_bOneStorey only what stands on the current storey.
    int IsVisible(CGouJianEx* obj) override;
    int CanBeSelected(CTvoFrameBase* frame, int command, CGouJianEx* obj) override;
    void Draw(CDC* dc, CFCoor* coor, unsigned char excludeType, unsigned char status) override;

    // --- plates ---
    /// A plate of the main type; while combining with the tag. Null for an outer contour, unless m_bOuterPlates.
    CMianGouJian* InstanceMianGouJian(int type) override;
    /// A plate that follows an edit gets a number of its own: each walk counts from 1 anew.
    void AddMianGouJian(CMianGouJian* plate) override;
    CGouJianEx* QueryGouJianDependentOnMianGouJian(CMianGouJian* plate) override;
    void DeleteGouJianDependentOnMianGouJian(CMianGouJian* plate) override;
    void CreateGouJianDependentOnMianGouJian(CMianGouJian* old, CGouJianEx* dependent, CMianGouJian* replacement) override;

    /// DoWeiBan. Loads stay on the plates that come out as they were.
    void FormPlates();

    // --- lines and nodes ---
    /// Agrees when merging is on and both lines have riders of the same kinds, or none.
    int CanMergeNetLineTogetherWithGouJian(CGjNetLine* l1, CArray<CGouJianEx*>& riders1, CGjNetLine* l2,
                                           CArray<CGouJianEx*>& riders2, int mode, CGjNetNode* shared) override;
    /// A node is independent when its star holds no line.
    int IsIndependentNetNode(CGjNetNode* node) override;

    // --- riders ---
    int QueryGouJianOnNetLine(CGjNetLine* line, CArray<CGouJianEx*>& riders) override;
    /// Each part gets a rider like each of the old line's, unless one of that kind stands there.
    void CreateGouJianAfterBreak(CGjNetLine* old, CGjNetLine* part, CArray<CGouJianEx*>& riders) override;
    void CreateGouJianAfterMerge(CGjNetLine* merged, CGjNetLine* l1, CGjNetLine* l2, CArray<CGouJianEx*>& riders1,
                                 CArray<CGouJianEx*>& riders2, int mode) override;
    /// Puts a strip on a line; the one that stands there if it is of the same width and tag, no longer hidden
    /// if this one is to be seen. Null when plates have taken the riders' type byte.
    CTvoRider* AddRider(CGjNetLine* line, float width, std::uint32_t tag, unsigned char status);

    // --- texts ---
    /// Gives all texts that height, in model units, and tells how many had another. Each is replaced by a new one, since
    /// only what enters or leaves the store can be taken back.
    int SetTextHeights(float height);

    // --- loads ---
    /// Puts a load on a plate, in the place of one that hangs there.
    void SetLoad(CMianGouJian* plate, double value);
    CTvoLoad* FindLoad(std::uint32_t plateId) const;  // null when nothing hangs on that plate

    // --- edits ---
    /// Does an edit of the net. Once plates stand they are made to follow it, and then the nodes go that it left without
    /// lines, except those of KeepNode. Inside a batch the edit is just done, since EndBatch looks after all.
    template <class Edit>
    void DoEdit(Edit edit) {
        const bool bracket = PlatesFollow() && !m_bBatch;
        if (bracket) BeginBatch();
        try {
            edit();
        } catch (...) {
            if (bracket) EndBatch();
            throw;
        }
        if (bracket) EndBatch();
    }
    /// A bracket about several edits, whatever stands: plates and nodes are seen to at its end.
    void BeginBatch();
    void EndBatch();
    bool InBatch() const { return m_bBatch; }
    /// This node stays, also when it has no line.
    void KeepNode(const CGjNetNode* node) { m_aKept.insert(node->get_m_dwGouJianID()); }
    std::vector<std::uint32_t> KeptNodes();  // those that stand, by identity
    /// Do plates follow the net? They do from the moment when the first is formed until that is undone; also while the
    /// last of them is gone because its border is open.
    bool PlatesFollow() const { return m_nPlatesFormed > 0; }
    void FollowWithPlates() { m_nPlatesFormed = std::max(m_nPlatesFormed, 1LL); }

    /// The spatial index, nothing pending: finer than GetInterRect.
    const CGridIndexServiceObject& Index() { return ReadyIndex(); }

    int m_bMerge = 1;           // 0: no line is ever merged
    int m_bOuterPlates = 0;     // 1: outer contours are plates too
    bool m_bGridShown = false;  // pictures show m_cBackgrnd
    bool m_bOneStorey = false;  // the view shows the current storey alone
    std::function<void(CDC&, CFCoor&)> m_onDrawBelow;  // paints what lies below all components; may be empty

private:
    CMianGouJian* FindSamePlate(CMianGouJian* plate);  // in its place, of its type; null when there is none

    std::unordered_map<std::uint32_t, CTvoLoad*> m_mapLoad;  // load by identity of the plate; only looked up
    std::unordered_map<std::uint32_t, std::vector<CTvoRider*>> m_mapRiders;  // by identity of the line; only looked up
    std::set<std::uint32_t> m_aKept;     // identities of nodes that stay without lines
    std::set<std::uint32_t> m_aTouched;  // identities of nodes that the batch may have left without lines
    bool m_bBatch = false;               // between BeginBatch and EndBatch
    bool m_bUndoing = false;
    // Plates formed in the history that is done: an undone forming doesn't count, a deletion doesn't change it.
    long long m_nPlatesFormed = 0;
};
