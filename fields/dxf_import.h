// From a layer of a DXF drawing to the axis net.
#pragma once
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/dxf/dxf.h"
#include "platform/string.h"

class CGridDataBase;
class CTvoFrameBase;

/// Adds everything on one layer that is a line, open polyline, arc or circle to the net: a line or a segment of
/// a polyline becomes a net line, an arc an arc, a circle two half circles. The side that closes a polyline is
/// not made unless the file repeats the first corner. Names of layers compare without ASCII case. With `bNew`
/// the data base is emptied first, otherwise the drawing is one undo step. The float is not used; `frame` may be
/// null. A file that can't be read or has no such layer ends in an empty import, with no message.
void _Import_DXF_To_Axe_Data(int bNew, CString file, CString layer, CGridDataBase* db, float, CTvoFrameBase* frame);

struct DxfImportOptions {
    bool bNew = false;      // empty the data base first
    CString file;
    CString layer;
    double scale = 1.0;     // of coordinates and radii as they are read
    double flattest = 0;    // degrees; a side of a polyline whose half sweep is below this is taken as straight
};

/// What became of the segments (sides, arcs, half circles) that were handed to the net.
struct DxfPieceCounts {
    std::uint64_t offered = 0;
    std::uint64_t taken = 0;       // new, or part of what was there
    std::uint64_t existed = 0;     // of those taken: an equal line stood there already
    std::uint64_t tooShort = 0;    // no longer than the net tolerance
    std::uint64_t degenerate = 0;  // both ends snap to one node
    std::uint64_t notFinite = 0;   // a coordinate is no finite float
};

struct DxfImportReport {
    DxfReadResult read;                    // how the reading of the file ended
    DxfHeader header;
    std::vector<std::string> layers;       // all layer names, in the drawing's order
    bool layerFound = false;
    std::uint64_t entities = 0;            // in the drawing
    std::map<std::string, std::uint64_t> onLayer;  // entities of the layer by kind
    std::map<std::string, std::uint64_t> taken;    // of those, the kinds that the net takes
    std::map<std::string, std::uint64_t> skipped;  // and those that it doesn't
    std::uint64_t dropped = 0;             // entities of the layer that the reader refused: numbers not finite or too far
    std::uint64_t closedNotMade = 0;       // closed polylines whose closing side was not made
    DxfPieceCounts pieces;
    double readSeconds = 0, netSeconds = 0, finishSeconds = 0;
};

/// The import with its report. Returns false, with the data base untouched, when the file can't be read as a
/// drawing at all or lacks the layer; `importAnyway` has these cases go through as an empty import.
bool ImportDxf(const DxfImportOptions& options, CGridDataBase& db, CTvoFrameBase* frame, DxfImportReport& report,
               bool importAnyway = false);

/// Adds layers of a drawing that has been read, with its plates and numbers, to the open undo step. Counts in the report
/// what stands on all of them together; what is known of the reading is left as it is.
void ImportDxfLayers(const DXF& drawing, const std::set<const DxfLayer*>& layers, const DxfImportOptions& options, CGridDataBase& db,
                     CTvoFrameBase* frame, DxfImportReport& report);
