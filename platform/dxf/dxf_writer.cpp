// Header, tables and the other sections around the entities.
#include "platform/dxf/dxf_writer.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "platform/dxf/dxf.h"
#include "platform/dxf/dxf_text.h"
#include "platform/string.h"

namespace {

// Handles of what every drawing of 2000 has; the numbers are those that drawings usually have.
enum Handle : std::uint32_t {
    kRoot = 0,
    kBlockRecordTable = 0x1,
    kLayerTable = 0x2,
    kStyleTable = 0x3,
    kLineTypeTable = 0x5,
    kViewTable = 0x6,
    kUcsTable = 0x7,
    kViewportTable = 0x8,
    kAppIdTable = 0x9,
    kDimStyleTable = 0xA,
    kRootDictionary = 0xC,
    kGroupDictionary = 0xD,
    kPlotStyleDictionary = 0xE,
    kPlotStyle = 0xF,
    kAppId = 0x12,
    kByBlock = 0x14,
    kByLayer = 0x15,
    kPaperRecord = 0x1B,
    kPaperBlock = 0x1C,
    kPaperBlockEnd = 0x1D,
    kModelRecord = 0x1F,
    kModelBlock = 0x20,
    kModelBlockEnd = 0x21,
    kDimStyle = 0x27,
    kViewport = 0x29,
    kFirstLineType = 0x100,
    kFirstStyle = 0x200,  // there are at most 255
    kFirstLayer = 0x400,  // entities follow on layers
};

// Patterns are in millimetres on paper. On a plan in millimetres a dash would drown at scale 1; at 50 that of
// DASHDOT is 635 mm, and the shortest lines of an axis net still show one.
constexpr int kLineTypeScale = 50;

const ACAD_STYLE kStandardStyle = {"STANDARD", "txt", "", 0, 1};

/// Names are as long as they are; line breaks and the like are not in them.
std::string NameInFile(const std::string& name) { return EncodeDxfText(name); }

}  // namespace

std::string WriteDxf(const DXF& drawing, const std::string& path) {
    DxfGroupSink sink(path);
    DxfWriter(drawing, sink).Run();
    return sink.Finish();
}

DxfWriter::DxfWriter(const DXF& drawing, DxfGroupSink& sink)
    : m_drawing(drawing), m_sink(sink), m_bHandles(drawing.GetWriteVersion() == DxfVersion::R2000) {
    m_styleNames.push_back(kStandardStyle.m_strName);
    for (const ACAD_STYLE& style : drawing.GetStyles()) m_styleNames.push_back(NameInFile(style.m_strName));
    m_lineTypeNames.push_back(StandardLineTypes()[0].m_szName);
    for (const DxfLineType* type : drawing.GetLineTypes()) m_lineTypeNames.push_back(type->m_szName);
    m_nNextHandle = kFirstLayer + static_cast<std::uint32_t>(drawing.GetLayers().size()) + 1;
    for (const ACAD_ENTITY* entity : drawing.GetEntities()) {
        AddToExtent(m_extent, *entity);
        if (entity->GetType() == kAcadPoint) {
            const auto& point = static_cast<const ACAD_POINT&>(*entity);
            m_extent.Add(point.m_x, point.m_y);
        } else if (entity->GetType() == kAcadText) {
            const auto& text = static_cast<const ACAD_TEXT&>(*entity);
            m_extent.Add(text.m_x, text.m_y);
        }
    }
}

void DxfWriter::Run() {
    const auto section = [&](const char* name, void (DxfWriter::*content)()) {
        m_sink.Text(0, "SECTION");
        m_sink.Text(2, name);
        if (content) (this->*content)();
        m_sink.Text(0, "ENDSEC");
    };
    section("HEADER", &DxfWriter::Header);
    if (m_bHandles) section("CLASSES", &DxfWriter::Classes);
    section("TABLES", &DxfWriter::Tables);
    section("BLOCKS", m_bHandles ? &DxfWriter::Blocks : nullptr);
    section("ENTITIES", &DxfWriter::Entities);
    if (m_bHandles) section("OBJECTS", &DxfWriter::Objects);
    m_sink.Text(0, "EOF");
}

// --- groups -----------------------------------------------------------------------------------------------

void DxfWriter::Number(int code, double value, bool wasFloat) {
    const auto narrow = static_cast<float>(value);
    if (wasFloat && static_cast<double>(narrow) == value) m_sink.Real(code, narrow);
    else m_sink.Real(code, value);
}

void DxfWriter::Point(int code, double x, double y, double z, bool wereFloats) {
    Number(code, x, wereFloats);
    Number(code + 10, y, wereFloats);
    Number(code + 20, z, wereFloats);
}

void DxfWriter::Variable(const char* name, int code, const char* value) {
    m_sink.Text(9, name);
    m_sink.Text(code, value);
}

void DxfWriter::Variable(const char* name, int code, std::int64_t value) {
    m_sink.Text(9, name);
    m_sink.Integer(code, value);
}

void DxfWriter::PointVariable(const char* name, double x, double y, bool hasZ) {
    m_sink.Text(9, name);
    m_sink.Real(10, x);
    m_sink.Real(20, y);
    if (hasZ) m_sink.Real(30, 0.0);
}

// --- header -----------------------------------------------------------------------------------------------

void DxfWriter::Header() {
    const DxfExtent& e = m_extent;
    Variable("$ACADVER", 1, m_bHandles ? "AC1015" : "AC1009");
    Variable("$DWGCODEPAGE", 3, "ANSI_936");
    PointVariable("$INSBASE", 0, 0, true);
    PointVariable("$EXTMIN", e.m_dMinX, e.m_dMinY, true);
    PointVariable("$EXTMAX", e.m_dMaxX, e.m_dMaxY, true);
    PointVariable("$LIMMIN", e.m_dMinX, e.m_dMinY, false);
    PointVariable("$LIMMAX", e.m_dMaxX, e.m_dMaxY, false);
    m_sink.Text(9, "$LTSCALE");
    m_sink.Real(40, float{kLineTypeScale});
    Variable("$TEXTSTYLE", 7, m_styleNames.back().c_str());
    Variable("$CLAYER", 8, "0");
    if (!m_bHandles) return Variable("$HANDLING", 70, std::int64_t{0});
    Variable("$CELTYPE", 6, "ByLayer");
    Variable("$CECOLOR", 62, std::int64_t{kAcadColorByLayer});
    Variable("$MEASUREMENT", 70, 1);  // metric patterns
    Variable("$INSUNITS", 70, 4);     // millimetres
    m_sink.Text(9, "$HANDSEED");      // beyond every handle that is given
    m_sink.Handle(5, m_nNextHandle + static_cast<std::uint32_t>(m_drawing.GetEntityCount()));
}

// --- tables -----------------------------------------------------------------------------------------------

void DxfWriter::Tables() {
    ViewportTable();
    LineTypeTable();
    LayerTable();
    StyleTable();
    if (m_bHandles) OtherTables();
}

void DxfWriter::BeginTable(const char* name, std::uint32_t handle, std::size_t count) {
    m_sink.Text(0, "TABLE");
    m_sink.Text(2, name);
    if (m_bHandles) {
        m_sink.Handle(5, handle);
        m_sink.Handle(330, kRoot);
        Class("AcDbSymbolTable");
    }
    m_sink.Integer(70, static_cast<std::int64_t>(count));
}

void DxfWriter::BeginRecord(const char* table, std::uint32_t tableHandle, std::uint32_t handle,
                            const char* className) {
    m_sink.Text(0, table);
    if (!m_bHandles) return;
    m_sink.Handle(tableHandle == kDimStyleTable ? 105 : 5, handle);
    m_sink.Handle(330, tableHandle);
    Class("AcDbSymbolTableRecord");
    Class(className);
}

/// The view that a reader opens with: the whole drawing.
void DxfWriter::ViewportTable() {
    constexpr double kMargin = 1.1, kAspect = 1.5;
    const DxfExtent& e = m_extent;
    const double width = e.m_dMaxX - e.m_dMinX, height = e.m_dMaxY - e.m_dMinY;
    const double shown = std::max(height, width / kAspect) * kMargin;
    BeginTable("VPORT", kViewportTable, 1);
    BeginRecord("VPORT", kViewportTable, kViewport, "AcDbViewportTableRecord");
    m_sink.Text(2, "*ACTIVE");
    m_sink.Integer(70, 0);
    const auto pair = [&](int code, double x, double y) {
        m_sink.Real(code, x);
        m_sink.Real(code + 10, y);
    };
    pair(10, 0, 0);  // the screen's corners
    pair(11, 1, 1);
    pair(12, (e.m_dMinX + e.m_dMaxX) / 2, (e.m_dMinY + e.m_dMaxY) / 2);
    pair(13, 0, 0);      // snap base
    pair(14, 100, 100);  // snap and grid steps
    pair(15, 1000, 1000);
    Point(16, 0, 0, 1, false);  // seen from above
    Point(17, 0, 0, 0, false);
    m_sink.Real(40, shown > 0 ? shown : 1000.0);
    m_sink.Real(41, kAspect);
    m_sink.Real(42, 50.0);  // lens
    m_sink.Real(43, 0.0);
    m_sink.Real(44, 0.0);
    m_sink.Real(50, 0.0);
    m_sink.Real(51, 0.0);
    const int modes[][2] = {{71, 0}, {72, 100}, {73, 1}, {74, 1}, {75, 0}, {76, 0}, {77, 0}, {78, 0}};
    for (const auto& [code, value] : modes) m_sink.Integer(code, value);
    EndTable();
}

void DxfWriter::LineType(std::uint32_t handle, const char* name, const char* description,
                         const std::vector<float>& pattern) {
    BeginRecord("LTYPE", kLineTypeTable, handle, "AcDbLinetypeTableRecord");
    m_sink.Text(2, name);
    m_sink.Integer(70, 0);
    m_sink.Text(3, description);
    m_sink.Integer(72, 65);
    m_sink.Integer(73, static_cast<std::int64_t>(pattern.size()));
    const double length = std::accumulate(pattern.begin(), pattern.end(), 0.0, [](double sum, float v) {
        return sum + std::abs(static_cast<double>(v));
    });
    m_sink.Real(40, static_cast<float>(length));  // 50.8 and not what the sum of floats would leave
    for (const float dash : pattern) {
        m_sink.Real(49, dash);
        if (m_bHandles) m_sink.Integer(74, 0);
    }
}

void DxfWriter::LineTypeTable() {
    const DxfLineType& unbroken = StandardLineTypes()[0];
    const auto& types = m_drawing.GetLineTypes();
    const bool listed = std::find(types.begin(), types.end(), &unbroken) != types.end();
    BeginTable("LTYPE", kLineTypeTable, types.size() + !listed + (m_bHandles ? 2 : 0));
    if (m_bHandles) {
        LineType(kByBlock, "ByBlock", "", {});
        LineType(kByLayer, "ByLayer", "", {});
    }
    std::uint32_t handle = kFirstLineType;
    if (!listed) LineType(handle++, unbroken.m_szName, unbroken.m_szDescription, unbroken.m_pattern);
    for (const DxfLineType* type : types)
        LineType(handle++, type->m_szName, type->m_szDescription, type->m_pattern);
    EndTable();
}

void DxfWriter::LayerTable() {
    const auto& layers = m_drawing.GetLayers();
    const auto isZero = [](const DxfLayer& layer) { return layer.m_strName == "0"; };
    const bool listed = std::any_of(layers.begin(), layers.end(), isZero);
    std::uint32_t handle = kFirstLayer;
    const auto record = [&](const DxfLayer& layer) {
        BeginRecord("LAYER", kLayerTable, handle++, "AcDbLayerTableRecord");
        m_sink.Text(2, NameInFile(layer.m_strName));
        m_sink.Integer(70, (layer.m_bFrozen ? 1 : 0) | (layer.m_bLocked ? 4 : 0));
        m_sink.Integer(62, layer.m_bOff ? -layer.m_nColor : layer.m_nColor);
        m_sink.Text(6, StandardLineTypes()[0].m_szName);
        if (m_bHandles) m_sink.Handle(390, kPlotStyle);
    };
    BeginTable("LAYER", kLayerTable, layers.size() + !listed);
    if (!listed) record(DxfLayer{.m_strName = "0"});
    for (const DxfLayer& layer : layers) record(layer);
    EndTable();
}

void DxfWriter::Style(std::uint32_t handle, const ACAD_STYLE& style) {
    BeginRecord("STYLE", kStyleTable, handle, "AcDbTextStyleTableRecord");
    m_sink.Text(2, NameInFile(style.m_strName));
    m_sink.Integer(70, 0);
    m_sink.Real(40, style.m_fHeight);
    m_sink.Real(41, style.m_fWidthFactor);
    m_sink.Real(50, 0.0);
    m_sink.Integer(71, 0);
    m_sink.Real(42, 300.0);  // the height that a reader proposes for new texts
    m_sink.Text(3, NameInFile(style.m_strFont));
    m_sink.Text(4, NameInFile(style.m_strBigFont));
}

void DxfWriter::StyleTable() {
    const auto& styles = m_drawing.GetStyles();
    const auto isStandard = [](const ACAD_STYLE& s) {
        return CString(s.m_strName).CompareNoCase("STANDARD") == 0;
    };
    const bool listed = std::any_of(styles.begin(), styles.end(), isStandard);
    BeginTable("STYLE", kStyleTable, styles.size() + !listed);
    std::uint32_t handle = kFirstStyle;
    if (!listed) Style(handle++, kStandardStyle);
    for (const ACAD_STYLE& style : styles) Style(handle++, style);
    EndTable();
}

void DxfWriter::OtherTables() {
    for (const auto& [name, handle] : {std::pair("VIEW", kViewTable), std::pair("UCS", kUcsTable)}) {
        BeginTable(name, handle, 0);
        EndTable();
    }
    BeginTable("APPID", kAppIdTable, 1);
    BeginRecord("APPID", kAppIdTable, kAppId, "AcDbRegAppTableRecord");
    m_sink.Text(2, "ACAD");
    m_sink.Integer(70, 0);
    EndTable();

    BeginTable("DIMSTYLE", kDimStyleTable, 1);
    Class("AcDbDimStyleTable");
    m_sink.Integer(71, 1);
    BeginRecord("DIMSTYLE", kDimStyleTable, kDimStyle, "AcDbDimStyleTableRecord");
    m_sink.Text(2, "STANDARD");
    m_sink.Integer(70, 0);
    EndTable();

    BeginTable("BLOCK_RECORD", kBlockRecordTable, 2);
    for (const auto& [name, handle] :
         {std::pair("*Model_Space", kModelRecord), std::pair("*Paper_Space", kPaperRecord)}) {
        BeginRecord("BLOCK_RECORD", kBlockRecordTable, handle, "AcDbBlockTableRecord");
        m_sink.Text(2, name);
    }
    EndTable();
}

// --- classes, blocks and objects of 2000 ------------------------------------------------------------------

/// The kinds of objects that are not known of themselves.
void DxfWriter::Classes() {
    for (const auto& [name, className] : {std::pair("ACDBDICTIONARYWDFLT", "AcDbDictionaryWithDefault"),
                                          std::pair("ACDBPLACEHOLDER", "AcDbPlaceHolder")}) {
        m_sink.Text(0, "CLASS");
        m_sink.Text(1, name);
        m_sink.Text(2, className);
        m_sink.Text(3, "ObjectDBX Classes");
        for (const int code : {90, 280, 281}) m_sink.Integer(code, 0);
    }
}

void DxfWriter::Blocks() {
    struct Space {
        const char* name;
        Handle record, begin, end;
    };
    for (const Space& space : {Space{"*Model_Space", kModelRecord, kModelBlock, kModelBlockEnd},
                               Space{"*Paper_Space", kPaperRecord, kPaperBlock, kPaperBlockEnd}}) {
        const auto head = [&](const char* kind, Handle handle, const char* className) {
            m_sink.Text(0, kind);
            m_sink.Handle(5, handle);
            m_sink.Handle(330, space.record);
            Class("AcDbEntity");
            if (space.record == kPaperRecord) m_sink.Integer(67, 1);
            m_sink.Text(8, "0");
            Class(className);
        };
        head("BLOCK", space.begin, "AcDbBlockBegin");
        m_sink.Text(2, space.name);
        m_sink.Integer(70, 0);
        Point(10, 0, 0, 0, false);
        m_sink.Text(3, space.name);
        m_sink.Text(1, "");
        head("ENDBLK", space.end, "AcDbBlockEnd");
    }
}

/// One plot style, for the layers: strict readers want each to name one.
void DxfWriter::Objects() {
    const auto object = [&](const char* kind, Handle handle, Handle owner) {
        m_sink.Text(0, kind);
        m_sink.Handle(5, handle);
        m_sink.Handle(330, owner);
    };
    const auto dictionary = [&](const char* kind, Handle handle, Handle owner) {
        object(kind, handle, owner);
        Class("AcDbDictionary");
        m_sink.Integer(281, 1);
    };
    const auto member = [&](const char* name, Handle handle) {
        m_sink.Text(3, name);
        m_sink.Handle(350, handle);
    };
    dictionary("DICTIONARY", kRootDictionary, kRoot);
    member("ACAD_GROUP", kGroupDictionary);
    member("ACAD_PLOTSTYLENAME", kPlotStyleDictionary);
    dictionary("DICTIONARY", kGroupDictionary, kRootDictionary);
    dictionary("ACDBDICTIONARYWDFLT", kPlotStyleDictionary, kRootDictionary);
    member("Normal", kPlotStyle);
    Class("AcDbDictionaryWithDefault");
    m_sink.Handle(340, kPlotStyle);
    object("ACDBPLACEHOLDER", kPlotStyle, kPlotStyleDictionary);
}
