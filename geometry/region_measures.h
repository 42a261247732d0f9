// Measures of outlines: area (MianJi), centroid (XingXin), perimeter (ZhouChang), turning angle
// (ShiLiangJiao), sense (NiShiZhen, anticlockwise), containment.
#pragma once
#include "geometry/fregion.h"

class CGridDataBase;

// Vertices and edges.
CFShoot GetElement(const CFRegion& region, int i);  // i wraps round; a zero vertex of an empty region
/// One end of a shape as a vertex: end 0 its start, leading along it, otherwise its end, leading back.
CFShoot GetFShoot(const CFShape* shape, int end);
float GetAngle(const CFShoot& s, const CFPoint& p);  // direction in which the edge leaves s towards p
/// Turn over the edge a to b and the vertex b, the edge b to c being the next. The turns of an outline add up
/// to +2 pi when it is anticlockwise. A reversal is decided by the true curves and not by rounding.
float GetShiLiangJiao(const CFShoot& a, const CFShoot& b, const CFPoint& c);
/// -(half the anticlockwise angle at point 0 from point 1 to point 2), in degrees.
float GetYangJiaoFromPoint(float x0, float y0, float x1, float y1, float x2, float y2);

// Area and centroid of parts.
float GetSanJiaoMianJi(const CFPoint& p1, const CFPoint& p2, const CFPoint& p3);  // TWICE the triangle's area
float GetXuanMianJi(const CFShoot& s, const CFPoint& p);  // between chord and arc; clockwise arcs negative
float GetBianMianJi(const CFShoot& s, const CFPoint& p1, const CFPoint& p2);  // the sum of these two
CFPoint GetSanJiaoXingXin(const CFPoint& p1, const CFPoint& p2, const CFPoint& p3);
CFPoint GetXuanXingXin(const CFShoot& s, const CFPoint& p);
CFPoint GetBianXingXin(const CFShoot& s, const CFPoint& p1, const CFPoint& p2);

// Measures of an outline.
float GetMianJi(const CFRegion& region);     // never negative
CFPoint GetXingXin(const CFRegion& region);  // the origin when empty
float GetZhouChang(const CFRegion& region);
CFRect GetRegionRect(const CFRegion& region);  // over the vertices alone: arcs that bulge out don't count
int IsNiShiZhen(const CFRegion& region);
int IsNiShiZhen(const CFPoint* points, int n);

// Where a point or an outline lies. A point within tol of the outline is bordering and not inside.
int Point_Inside_Region(const CFRegion& region, float x, float y, float tol);
int Point_Bordering_Region(const CFRegion& region, float x, float y, float tol);
/// True when every vertex of inner lies in or on outer, and also whenever the outlines touch or cross. Needs
/// the net's intersection of lines, so it is defined with the net.
int IsRegionInsideRegion(CGridDataBase* grid, CFRegion& outer, CFRegion& inner);

// Small helpers.
/// Keeps the first of each run of points nearer than 0.01 to the last one kept; neighbours only. The new
/// size.
int RemoveDuplicatePoint(CArray<CFPoint, CFPoint>& points);
/// Enters a level in an ascending array, unless one nearer than 5 stands there. A NaN is not entered.
void Add_Into_Array(CArray<float, float>* levels, float v);
/// v rounded down to a multiple of step; a negative v that is a multiple goes one step further down.
float GetDownModulus(float v, float step);
