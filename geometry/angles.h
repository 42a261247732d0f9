// Angles, distances and frames in the plane.
#pragma once

/// The angle in [0, 2 pi), with 6.2831855f as the full turn; within 1e-5 of a whole turn (from above) exactly
/// 0. An angle that is not finite gives 0.
float Get2PIAngle(float a);

/// Distance in the plane, in float throughout.
float get_dist(float x1, float y1, float x2, float y2);

/// The direction from the first point to the second in [0, 6.2831855f); within 1e-5 of the x axis exactly 0.
/// Coincident points give 0.
float get_line_angle(float x1, float y1, float x2, float y2);

/// The inner angles of a triangle at its three points, in degrees. Collinear points have 0, 180 and 0; an angle at a
/// point that coincides with another one is 0.
void get_triangle_inter_angle(float x1, float y1, float x2, float y2, float x3, float y3, float& angle1, float& angle2,
                              float& angle3);

void swap_float(float* a, float* b);

void shift_coordinate(float dx, float dy, float* x, float* y);  // adds (dx, dy)
void rotate_coordinate(float angle, float* x, float* y);        // turns anticlockwise about the origin

/// Takes a point from a frame whose origin is (x0, y0) and whose x axis points in the direction `angle` to
/// the model: turns by +angle, then shifts by +(x0, y0).
void frame_to_model(float angle, float x0, float y0, float* x, float* y);
