// Makes a finer field from a field.
#pragma once

class CChang;

/// Fills `target`, which is emptied first, with each triangle of `source` cut in four at the middles of its
/// edges. Values there are the means of the edge's ends. The new nodes are numbered upwards from the greatest
/// number in a triangle. An edge counts by its direction: two triangles that run through one edge in opposite
/// directions get two nodes in its middle, at one place, and the fine mesh is not joined there. `source` and
/// `target` must not be one object.
void wange_ge_jia_mi(CChang* source, CChang* target);
