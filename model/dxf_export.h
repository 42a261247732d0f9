// DXF out: the model as its view shows it.
#pragma once
#include <string>

#include "platform/dxf/dxf.h"

class CFCoor;
class CTvoDataBase;

/// What came of an export.
struct DxfExportResult {
    int written = 0;        // 1: the file is there
    int entities = 0;       // in the drawing
    std::string reason;     // why it was not written, one phrase
};

/// Replays the display lists of all components of types 1 to 254 that are not hidden into a drawing and writes that,
/// type by type and by ascending identity. `coor` gives wide lines their width in device units, as the view would; the
/// default one makes them millimetres. Tells the frame, if there is one, how far it is. A file that can't be written
/// leaves the one before as it was.
DxfExportResult ExportDxf(CTvoDataBase& db, const std::string& path, DxfVersion version, CFCoor& coor);
