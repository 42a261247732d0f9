// The fixed tolerances and angle constants, by the rule that uses them. All others come in as arguments.
#pragma once

namespace tolerance {

// Turns and half turns. Rules that work in float and rules that work in double have each their own constant,
// and results depend on which is taken: 6.2831855f lies above 2 pi, 6.283185307 below it.
inline constexpr float kFullTurnF = 6.2831855f;
inline constexpr float kHalfTurnF = 3.1415927f;
inline constexpr double kFullTurn = 6.283185307;  // from here on a sweep or a `c` is a circle (not strict)
inline constexpr double kHalfTurn = 3.1415926535;
inline constexpr double kPi = 3.14159265358979323846;  // for plain mathematics

// Angles, radians.
inline constexpr double kZeroAngle = 1e-5;            // below (strict) a direction is exactly 0
inline constexpr float kReversal = 0.0055555557f;     // a turn is a reversal when nearer to pi (strict)
inline constexpr float kArcEdge = 0.0001f;            // above (strict) an edge turns as an arc at a reversal
inline constexpr float kFlatSegment = 0.0017444445f;  // up to here an arc edge adds no area
inline constexpr double kFlatSine = 1e-7;             // |sin c| below (strict) makes a straight piece
inline constexpr float kLevelSine = 1e-7f;            // up to here a view is seen along the plane

// Lengths, model units.
inline constexpr float kSamePoint = 0.001f;      // CFPoint ==, strict per coordinate
inline constexpr double kBorder = 0.001;         // a point on the outline of a region, not strict
inline constexpr double kMergePoints = 0.01;     // points of intersection nearer (strict) are one
inline constexpr float kDuplicatePoint = 0.01f;  // RemoveDuplicatePoint, strict
inline constexpr float kLevelSpacing = 5.0f;     // Add_Into_Array, strict
inline constexpr float kReversalProbe = 100.0f;  // how far along an arc a reversal is judged

}  // namespace tolerance
