// What a picture of the model shows: everything that is visible, in layers.
#pragma once
#include <vector>

#include "host/net_walk.h"

class CGjChang;
class CGouJianEx;
class CTvoHostDataBase;

/// The components of a picture, borrowed, each layer by ascending identity; hidden ones are not among them.
/// Plates and what hangs on them have a look of their own (host/plate_look.h), fields too
/// (host/field_look.h).
struct PictureContent {
    std::vector<CGjChang*>
        fields;  // their clouds are painted before all else, isolines and digits above the lines
    std::vector<CGouJianEx*> below;  // areas and riders, painted before the lines of the net
    std::vector<CGjNetLine*> lines;
    std::vector<CGouJianEx*> above;  // the other components, texts last
    std::vector<CGjNetNode*> nodes;  // on top
    Extent extent;  // of all of it, lines as wide as they are; of the grid when there is nothing else
};

PictureContent ContentOfPicture(CTvoHostDataBase& db);
