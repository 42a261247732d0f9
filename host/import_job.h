// One import of a layer into a net, as tvo does it, and what came of it.
#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "fields/dxf_import.h"

class CGridDataBase;
class CTvoHostDataBase;

inline constexpr int kMaxTolerance = 1000000;  // mm

struct ImportJob {
    std::string file;
    std::string layer;            // compared without ASCII case
    std::optional<double> scale;  // of coordinates and radii; none given: 1, with a note if the unit is not the millimetre
};

/// A stage of the work and how long it took.
struct ImportStage {
    std::string name;
    double seconds = 0;
};

struct PlateFigures {
    std::size_t count = 0;
    double area = 0;           // of all, square millimetres
    std::size_t dangling = 0;  // lines that no closed walk can use
};

struct ImportOutcome {
    ImportJob job;
    DxfImportReport report;
    std::size_t nodes = 0, lines = 0, arcs = 0;  // in the net afterwards; arcs are among the lines
    std::size_t nodesDeleted = 0;                // since no line met there
    std::optional<PlateFigures> plates;          // none: they were not formed
    std::string modelFile;                       // empty: not saved
    std::uint64_t modelBytes = 0;
    std::vector<ImportStage> stages;             // in order
};

/// Opens an undo step and adds the layer to the net. A drawing that breaks off is taken as far as it goes, with a
/// warning on the error stream. Throws DataFailure, with the net untouched, when the drawing can't be read or has no
/// such layer; the message then names those that it has.
ImportOutcome RunImportJob(const ImportJob& job, CGridDataBase& db);

/// Deletes the nodes where no line meets, numbers again and notes it in the outcome.
void DeleteNodesWithoutLines(CGridDataBase& db, ImportOutcome& outcome);

/// Notes anew what stands in the net, with its plates if they follow it.
void NoteNet(CTvoHostDataBase& db, ImportOutcome& outcome);

/// Forms the plates of the whole net, numbers them and notes it in the outcome.
void FormPlates(CTvoHostDataBase& db, ImportOutcome& outcome);

/// The reason why a text is no scale; empty when it is one.
std::string CheckScale(const std::string& text);
