// Writes a drawing as a text DXF file. Internal.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dxf/dxf_group_sink.h"
#include "platform/dxf/layer_summary.h"

class DXF;
struct ACAD_STYLE;
struct DxfLineType;
class ACAD_ENTITY;
class ACAD_LINE;
class ACAD_POLYLINE;
class ACAD_TEXT;

/// Writes the drawing in its version. Empty when the file is whole, else the reason.
std::string WriteDxf(const DXF& drawing, const std::string& path);

/// One writing of one drawing. R12 has no handles, so that every group that carries one is left out there, and so are
/// the class names (code 100) and the sections that came with them.
class DxfWriter {
public:
    DxfWriter(const DXF& drawing, DxfGroupSink& sink);
    void Run();

private:
    /// A number of a drawing is written as what it was before the drawing widened it.
    void Number(int code, double value, bool wasFloat);
    void Point(int code, double x, double y, double z, bool wereFloats);
    void Variable(const char* name, int code, const char* value);
    void Variable(const char* name, int code, std::int64_t value);
    void PointVariable(const char* name, double x, double y, bool hasZ);
    void Class(const char* name) {
        if (m_bHandles) m_sink.Text(100, name);
    }

    void Header();
    void Classes();
    void Tables();
    void BeginTable(const char* name, std::uint32_t handle, std::size_t count);
    void BeginRecord(const char* table, std::uint32_t tableHandle, std::uint32_t handle, const char* className);
    void EndTable() { m_sink.Text(0, "ENDTAB"); }
    void ViewportTable();
    void LineTypeTable();
    void LineType(std::uint32_t handle, const char* name, const char* description, const std::vector<float>& pattern);
    void LayerTable();
    void StyleTable();
    void Style(std::uint32_t handle, const ACAD_STYLE& style);
    void OtherTables();
    void Blocks();
    void Objects();

    void Entities();
    void Entity(const ACAD_ENTITY& entity);
    void Head(const ACAD_ENTITY& entity, const char* kind, const char* className);
    void Line(const ACAD_LINE& line);
    void Text(const ACAD_TEXT& text);
    void OldPolyline(const ACAD_POLYLINE& polyline);
    void LightPolyline(const ACAD_POLYLINE& polyline);
    const std::string& LayerName(const ACAD_ENTITY& entity);

    const DXF& m_drawing;
    DxfGroupSink& m_sink;
    const bool m_bHandles;
    DxfExtent m_extent;
    std::vector<std::string> m_styleNames;     // as the file has them; the standard one first
    std::vector<std::string> m_lineTypeNames;  // the same; the unbroken one first
    std::uint32_t m_nNextHandle = 0;           // of entities
    const void* m_pLayer = nullptr;            // the layer that was last asked for,
    std::string m_strLayer;                    // and its name in the file
};
