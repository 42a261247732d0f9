// Questions about the shape of a plate or an outline. They change nothing.
#pragma once
#include "geometry/fregion.h"

class CGridDataBase;
class CMianGouJian;

/// Is it a rectangle? `tolerance` is in degrees; vertices on a side don't count as corners. Sets the results
/// with a 1 only: the width is the side that starts at the first corner found, `angle` (degrees) its direction;
/// `corners`, unless null, has room for four points. An outline with an arc is none.
int IsRectangleRegion(CFRegion& region, float& width, float& height, float& angle, float tolerance, CFPoint* corners);
/// The same of the plate's shape sides; 0 for null. The data base is not asked.
int IsRectanglePlate(CGridDataBase* db, CMianGouJian* plate, float& width, float& height, float& angle, float tolerance,
                     CFPoint* corners);
