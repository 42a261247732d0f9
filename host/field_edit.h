// Putting fields into a model, for scripts and for the editor.
#pragma once
#include <cstdint>
#include <memory>
#include <string>

class CChang;
class CGjChang;
class CTvoHostDataBase;
enum FIELD_DISPLAY : int;

constexpr int kMostFieldTriangles = 20000000;  // that densifying may make: some 2 GB

/// How a field is shown.
struct FieldLook {
    int scheme = 1;  // of colours, 1 to 5
    FIELD_DISPLAY display = static_cast<FIELD_DISPLAY>(0);
    float scale = 1;  // of the values shown
    int mesh = 0;     // the triangles too
    int values = 0;   // the values at the nodes too
};

/// Shows a field as a component that owns it.
CGjChang* AddField(CTvoHostDataBase& db, std::unique_ptr<CChang> chang, std::uint32_t tag,
                   const FieldLook& look, unsigned char status);

/// A tag that no field has.
std::uint32_t NextFieldTag(CTvoHostDataBase& db);

/// Puts a field with each triangle cut in four in the place of a field, shown as this is; the log keeps the
/// old one. Null, with everything as it was, when that would be too many triangles. Nodes are numbered anew
/// where their numbers leave no room for new ones.
CGjChang* DensifyField(CTvoHostDataBase& db, CGjChang* field);
