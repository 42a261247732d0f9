#include "host/dxf_output.h"

#include <sys/stat.h>

#include "geometry/fcoor.h"
#include "host/failure.h"
#include "host/progress.h"
#include "model/dxf_export.h"
#include "model/paths.h"

SavedDrawing SaveDrawing(const std::string& path, CTvoDataBase& db, DxfVersion version) {
    SavedDrawing saved;
    saved.file = ConfirmFileExt(path, "dxf").Std();
    CTerminalProgress progress("exporting");
    CFCoor millimetres;  // device units are model units
    const DxfExportResult result = ExportDxf(db, saved.file, version, millimetres);
    progress.Finish();
    if (!result.written) throw DataFailure("cannot write " + saved.file + ": " + result.reason);
    saved.entities = result.entities;
    struct stat status {};
    if (::stat(saved.file.c_str(), &status) == 0) saved.bytes = static_cast<std::uint64_t>(status.st_size);
    return saved;
}

bool ReadDxfVersion(const std::string& text, DxfVersion& version) {
    if (CString(text).CompareNoCase("r12") == 0) version = DxfVersion::R12;
    else if (text == "2000") version = DxfVersion::R2000;
    else return false;
    return true;
}

std::string CheckDxfVersion(const std::string& text) {
    DxfVersion version;
    return ReadDxfVersion(text, version) ? "" : "'" + text + "' is no version that is written, r12 or 2000";
}
