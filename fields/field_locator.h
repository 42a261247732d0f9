// Finds the place of a point in a field. Internal.
#pragma once
#include <array>

#include "fields/box_tree.h"
#include "fields/field_mesh.h"

/// How far a point may lie outside of a triangle that holds it, as a share of its longest edge.
inline constexpr double kFieldTolerance = 1e-6;

/// The shares of the three corners in the value at a point, adding up to 1.
struct CornerShares {
    std::array<double, 3> share{};
    bool held = false;  // false: the triangle does not hold the point; one without area holds none
};
/// Three places in the plane.
struct TrianglePlaces {
    std::array<float, 3> x{}, y{};
};
CornerShares SharesAt(const TrianglePlaces& corners, double x, double y);

/// Answers where in a field a point lies, for the sizes that the field had when this was made.
class CFieldLocator {
public:
    CFieldLocator(const CChang& field, const CFieldMesh& mesh);

    /// Does the field still have the numbers of nodes and triangles that this was made for?
    bool Fits(const CChang& field) const;

    /// The value, by the triangle or the node at the point. False when there is neither.
    bool ValueAt(float x, float y, float& value);

private:
    /// The corners by position, and their places beside them: a triangle that doesn't hold the point, which
    /// every second one that is looked at does not, costs no access to the nodes.
    struct Triangle {
        CFieldMesh::Corners at{};
        TrianglePlaces places;
    };

    void BuildNodes();

    const CChang& m_field;
    const CFieldMesh& m_mesh;
    int m_nNodes, m_nTriangles;  // sizes
    double m_dReach = 0;         // how near a node must be: by the longest edge of all
    CBoxTree m_cTriangles;
    PooledVector<Triangle> m_aTriangle;  // by rank in the tree
    CBoxTree m_cNodes;                   // built when a point first falls outside of all triangles
    bool m_bNodesBuilt = false;
};
