// The report of an import, for people and for programs.
#pragma once
#include <iosfwd>
#include <string>
#include <vector>

#include "host/import_job.h"
#include "host/json_text.h"

/// What a user should know beyond the numbers: units that are no millimetres, sides that were not made, a drawing that
/// breaks off.
std::vector<std::string> ImportNotes(const ImportOutcome& outcome);

/// {"type":"import",...}, one object; the keys as `tvo import --help` lists them.
Json ImportJson(const ImportOutcome& outcome);

void PrintImportReport(std::ostream& out, const ImportOutcome& outcome);

/// One line for below a picture: layer, numbers of nodes and lines, drawing.
std::string CaptionText(const ImportOutcome& outcome);
