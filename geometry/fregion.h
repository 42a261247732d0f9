// CFRegion: a closed outline of straight and circular edges.
#pragma once
#include "geometry/frect.h"
#include "geometry/fshape.h"
#include "geometry/fshoot.h"
#include "platform/containers.h"

/// An outline in the order of its vertices; the edge that leaves the last one leads back to the first. Which
/// sense it runs in is the caller's affair. Its area is where its winding number isn't 0; arcs count exactly.
class CFRegion : public CArray<CFShoot, CFShoot> {
public:
    CFRegion() = default;
    CFRegion(const CFPoint* points, int n) { Init(points, n); }
    CFRegion(const CFRect& rect);  // anticlockwise from the corner of the minima
    CFRegion(const CFRegion&) = default;
    CFRegion& operator=(const CFRegion&) = default;

    void Init(const CFPoint* points, int n);  // x and y; straight edges
    void Init(const float* px, const float* py, int n);

    /// A quick test on the first and last vertex: true when the outline bends to the left there.
    int IsOrder() const;

    // Where things lie.
    int InRegion(const CFPoint& p) const;  // inside, or within 0.001 of the outline
    int HitTest(const CFPoint& p, float /*tol*/) const { return InRegion(p); }  // tol is not passed on
    void GetRect(CFPoint& min, CFPoint& max) const;  // extent, arcs included; all 0 when empty

    /// outlinesOnly 0: the closed areas share a point (touching and containment either way count; a region
    /// without area is its outline). Otherwise: the outlines share a point.
    int Intersect(const CFRegion& other, int outlinesOnly) const;
    /// The points that the outline shares with the shape, in order along the shape; a stretch in common gives
    /// its two ends. Points nearer than 0.01 are one. Writes and counts at most 10; -1 when there is none.
    /// points may be null.
    int Intersect(const CFShape& shape, CFPoint* points) const;

    // Moving, vertex by vertex.
    void Offset(const CFPoint& d);
    void Rotate(const CFPoint& centre, double angle);
    void Stretch(const CFPoint& centre, double factor);
    void Mirror(const CFPoint& p1, const CFPoint& p2);  // each c changes its sign

    void Serialize(CArchive& ar) override;  // a 32-bit count, then each vertex
};
