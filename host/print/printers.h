// The printers that the desktop knows, and what is sent to them.
#pragma once
#include <string>
#include <vector>

class CWindowSystem;

/// What was found when printers were looked for.
struct PrinterList {
    std::vector<std::string> names;  // in the order in which the system tells them
    std::string none;                // why there are none, for people; empty when there are some
};

/// Asks the print system (`lpstat`). It may take seconds, and comes back without an answer where the system
/// gives none.
PrinterList FindPrinters(CWindowSystem& system);

/// How a job was taken.
struct PrintJob {
    std::string job;      // its name with the print system; may be empty
    std::string wrong;    // why it was not taken, for people; empty: it was
    std::string details;  // what the print system said to it, in its own words; may be empty
};

/// Hands a file to a printer (`lp`). When it comes back the print system has its own copy of it.
PrintJob SendToPrinter(CWindowSystem& system, const std::string& printer, const std::string& file);
