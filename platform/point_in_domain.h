// CPointInDomain: area, centroid and containment of an outline of straight and circular edges.
#pragma once
#include "platform/domain_edge.h"

/// A bundle of routines without state.
class CPointInDomain {
public:
    /// Never negative, whichever way the outline runs.
    float Get_Area(int n, const CDomainEdge* edges) const;
    /// Independent of the sense. Without an area the mean of the vertices; without edges (0, 0).
    void Get_Centroid(int n, const CDomainEdge* edges, float& x, float& y) const;
    /// Winding number other than 0, and not within tol of an edge.
    int Point_In_Domain(int n, const CDomainEdge* edges, float x, float y, float tol) const;
    /// At most tol from an edge.
    int Point_On_Edge_Domain(int n, const CDomainEdge* edges, float x, float y, float tol) const;
};
