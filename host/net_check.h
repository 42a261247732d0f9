// What keeps cells of a net open: places that a drafter would want to look at.
#pragma once
#include <cstdint>
#include <vector>

class CTvoHostDataBase;

enum FaultKind {
    kFaultDangling,   // an end where no other line meets
    kFaultGap,        // two ends from 1 to 5 tolerances apart that no line joins; at one of them a way ends
    kFaultNear,       // a node beside a line that it doesn't join: within the tolerance, or within 5 where a way ends
    kFaultShort,      // a line shorter than the tolerance
    kFaultDuplicate,  // two lines that are the same, or two nodes nearer than the tolerance
    kFaultKindCount
};

/// One such place. Kinds say what the two identities are: node and line, two nodes, node and line, line alone, two
/// lines or two nodes.
struct NetFault {
    FaultKind kind;
    std::uint32_t first = 0, second = 0;
    double x = 0, y = 0;    // of the first; a line's start
    double x2 = 0, y2 = 0;  // of the second node, the place on the line nearest to the node, the line's end
    double distance = 0;    // between the two places; for a line its length
};

/// All of them, by kind and then by identities. Only what stands on one storey is compared. Each node and line looks
/// at its neighbourhood alone.
std::vector<NetFault> CheckNet(CTvoHostDataBase& db, double tolerance);
