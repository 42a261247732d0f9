// Reading fields from files that people and mesh programs make.
#pragma once
#include <cstdint>
#include <string>

class CChang;
class FieldLines;

/// What a file brought, beside the field itself.
struct FieldFileTally {
    std::string format;         // "text", "msh 2.2", "msh 4.1"
    int values = 0;             // of the ten, how many the file gives
    std::uint64_t leftOut = 0;  // elements that are no triangles
};

/// Fills the field, which is emptied first, from a file. Its form is told by its content: lines "node N X Y
/// V1 [V2..V10]" and "tri A B C" in any order, # for comments; or Gmsh MSH 2.2 or 4.1 in ASCII, the triangles
/// with the values of $NodeData. Throws DataFailure with the file, the line's number and the reason at the
/// first line that is none of this. Nodes that a file gives no value have NaN.
FieldFileTally ReadFieldFile(const std::string& path, CChang& field);

/// The Gmsh forms, from their first line on. Internal.
FieldFileTally ReadMshFile(FieldLines& lines, CChang& field);

/// What is the matter with a field, counted; each node and triangle is looked at once.
struct FieldTally {
    std::uint64_t passedOver = 0;      // triangles that are not shown
    std::uint64_t missing = 0;         // of these, with a corner that is no node's number
    std::uint64_t repeatedCorner = 0;  // of these, with one node at two corners
    std::uint64_t repeatedNumber = 0;  // of these, with a number that several nodes bear
    std::uint64_t notFinite = 0;       // of these, with a coordinate or value that is not finite
    /// In words; empty when all is well.
    std::string Remarks(const CChang& field) const;
};
FieldTally TallyField(const CChang& field);
