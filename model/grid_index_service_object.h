// CGridIndexServiceObject: which physical components may lie in a rectangle.
#pragma once
#include <vector>

#include "geometry/frect.h"
#include "model/spatial_hash.h"
#include "platform/containers.h"

class CGouJianEx;
class CGouJianGrid;

/// The spatial index of a data base: a uniform grid of square cells of 8000 units, filled lazily. A component
/// first waits in a pool; the pool is worked off when a query arrives (or at once without a frame).
///
/// The grid decides what a query offers: every physical component that was entered in one of the cells that
/// the rectangle touches. Where a component really lies is kept apart, in a layered hash of boxes beside its
/// range of cells, so that neither a stray point far out nor a crowded cell costs anything; a cell as an object
/// is put together only when somebody asks to look at one.
class CGridIndexServiceObject {
public:
    static constexpr float kCellSize = 8000.0f;

    CGridIndexServiceObject();
    CGridIndexServiceObject(const CGridIndexServiceObject&) = delete;
    CGridIndexServiceObject& operator=(const CGridIndexServiceObject&) = delete;
    virtual ~CGridIndexServiceObject();

    // --- filling ---
    void AddToPool(CGouJianEx* component);
    /// Enters a component at once, as a pool of its own would.
    void AddNow(CGouJianEx* component);
    /// Takes a component out of the pool and out of the index, wherever it is.
    void Remove(CGouJianEx* component);
    bool IsPending(CGouJianEx* component) const;
    int GetPoolCount() const { return m_mapPool.GetCount(); }
    void EmptyPool() { m_mapPool.RemoveAll(); }
    /// Enters the whole pool; `progress` (may be null) is told percents.
    void WorkOffPool(void (*progress)(void* context, int percent), void* context);

    // --- asking; the pool should have been worked off ---
    /// All physical components in the cells of the rectangle, by ascending identity. A superset of what lies in it.
    std::vector<CGouJianEx*> Query(const CFRect& rect) const;
    /// Calls f(component) for each node whose entered box meets the square of half side t about a point.
    template <class F>
    void ForEachNodeNear(float x, float y, float t, F f) const {
        m_cNodes.ForEachIn({x - t, y - t, x + t, y + t}, [&](std::uint32_t, const CSpatialHash::Record& r) { f(r.component); });
    }
    void FetchNodesNear(float x, float y) const { m_cNodes.FetchAhead(x, y); }
    /// Components other than nodes whose entered box meets `rect`, by ascending identity. With a section given
    /// (x, y of both ends) only those that may come within `margin` of it.
    void OthersIn(const CFRect& rect, std::vector<CGouJianEx*>& out) const;
    void OthersAlong(float ax, float ay, float bx, float by, float margin, std::vector<CGouJianEx*>& out) const;

    /// The cell of a sequence number as it stands now, or null. Borrowed, good until the next call.
    CGouJianGrid* GetGrid(int seq);
    /// Sequence number of the cell of a point; -1 outside the grid.
    int GetSeq(const CFPoint& point) const;

    CFRect m_rcGrid;   // area covered; every side a multiple of 8000
    int m_nCols = 0;   // grid size
    int m_nRows = 0;
    CMap<int, int, CGouJianGrid*, CGouJianGrid*> m_mapGrid;  // cells that were asked for; owned
    CMap<unsigned long, unsigned long, CGouJianEx*, CGouJianEx*> m_mapPool;  // waiting components by identity

private:
    void Resize(const CFRect& wanted);
    static CFRect ExtentForEntry(CGouJianEx* component);
    void Enter(CGouJianEx* component, const CFRect& box);
    // Columns and rows relative to the grid, as a rectangle's cells are counted.
    CSpatialHash::CellRange CellsOf(const CFRect& rect) const;
    void ForgetGrids();

    // Nodes lie apart from the rest, so that the many searches for a node never see a line.
    CSpatialHash& HashOf(CGouJianEx* component);
    CSpatialHash m_cNodes{512}, m_cOthers{1024};
    int m_nFirstCol = 0, m_nFirstRow = 0;  // absolute column and row of the grid's lower left cell
    float m_fWidestMargin = 0;             // greatest margin that any component was entered with
};
