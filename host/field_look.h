// How fields look in pictures of both kinds.
#pragma once
#include <string>
#include <vector>

#include "host/net_walk.h"
#include "platform/win_types.h"

class CDC;
class CFCoor;
class CGjChang;
class CTvoHostDataBase;
enum FIELD_DISPLAY : int;

/// The fields of a model by identity, all and those that a picture shows.
std::vector<CGjChang*> AllFields(CTvoHostDataBase& db);
std::vector<CGjChang*> ShownFields(CTvoHostDataBase& db);

/// "cloud", "isoline" or "digit".
const char* FieldDisplayName(FIELD_DISPLAY display);

/// Widens a drawing's extent by the fields in it.
void AddFields(Extent& extent, const std::vector<CGjChang*>& fields);

// ---- pixels ---------------------------------------------------------------------------------------

/// Pixels at the left edge that the ruler of the fields takes in a picture of that size; 0 without fields,
/// and in a picture too small for one. `height` is that of the drawing alone.
CSize RulerSize(CDC& dc, const std::vector<CGjChang*>& fields, int width, int height);

/// The clouds, which belong under the lines of the plan.
void DrawClouds(CDC& dc, CFCoor& coor, const std::vector<CGjChang*>& fields);

/// Isolines and digits, and the ruler of the last field in the top left corner.
void DrawFieldLists(CDC& dc, CFCoor& coor, const std::vector<CGjChang*>& fields, const CSize& ruler);

// ---- SVG ------------------------------------------------------------------------------------------

/// The clouds as embedded pictures.
void AppendClouds(std::string& svg, const std::vector<CGjChang*>& fields);

/// Isolines as paths and labels as texts, one group for each field.
void AppendFieldLists(std::string& svg, const std::vector<CGjChang*>& fields, double lineWidth);

/// Width of a ruler of a height, in the drawing's units; 0 without fields.
double RulerWidth(const std::vector<CGjChang*>& fields, double height);

/// The ruler of the last field, its top left corner at (x, y), y downwards.
void AppendRuler(std::string& svg, const std::vector<CGjChang*>& fields, double x, double y, double height);
