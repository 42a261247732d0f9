// Intersection of straight sections and arcs. Work is in double on the float arguments; no result is ever
// NaN, and a point that is not found leaves its references untouched.
#pragma once

/// What rotate_coordinate needs to make the line from a to b level: minus its direction.
float JH_GetAngle(float ax, float ay, float bx, float by);

/// Least distance from p to the closed section ab; infinite when a coordinate is not a number.
float JH_GetMinDist_PointToLineSection(float px, float py, float ax, float ay, float bx, float by);

/// Crossing of the endless lines ab and cd: 1, or 0 when they are parallel (sine of their angle at most 1e-7)
/// or a section has no length. The tolerance plays no part.
int JH_GetInterPoint_Line(float ax, float ay, float bx, float by, float cx, float cy, float dx, float dy,
                          float* x, float* y, float tol);

/// The same crossing, if it overshoots each section by at most tol, measured along that section.
int JH_GetInterPoint_LineSection_LineSection(float ax, float ay, float bx, float by, float cx, float cy,
                                             float dx, float dy, float* x, float* y, float tol);

/// Points of the section ab on the arc, anticlockwise from start to end (radians, modulo a full turn): 0 to
/// 2, in order along the section. A point may overshoot the section by tol along it, and the arc by tol from
/// its end; a line that passes the circle within tol touches it at its foot. Two points nearer than tol are
/// one.
int JH_GetInterPoint_LineSection_Arc(float ax, float ay, float bx, float by, float cx, float cy, float r,
                                     float start, float end, float* x0, float* y0, float* x1, float* y1,
                                     float tol);

/// Points that two arcs share: 0 to 2, in order along the first. 0 when the circles are the same within tol.
int JH_GetInterPoint_Arc_Arc(float cx, float cy, float r, float start, float end, float cx2, float cy2,
                             float r2, float start2, float end2, float* x0, float* y0, float* x1, float* y1,
                             float tol);
