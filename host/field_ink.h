// The colours of isolines and digits on white paper.
#pragma once
#include <string>
#include <vector>

#include "platform/win_types.h"

class CGjChang;
class CGraphEntity;

/// The colour, or a darker one of its hue where it is too light to be seen as a line on white.
COLORREF FieldInk(COLORREF color);

/// A number as a reader wants it: a zero has no sign.
std::string FieldNumber(const std::string& text);

/// A primitive of a field's display list with the colour and line type that it has now.
struct InkedEntity {
    CGraphEntity* entity;  // borrowed
    COLORREF color;
    int lineType;
};
/// Those that have a finite place.
std::vector<InkedEntity> InkedEntities(CGjChang& field);
