// Fills a drawing from the groups of a file. Internal.
#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/dxf/dxf.h"
#include "platform/dxf/dxf_tags.h"

/// One reading of one file into one empty drawing. Sections may come in any order and number, and may lack
/// their ends; ENTITIES, the layer table and the header are looked at, the rest is passed over.
class DxfReader {
public:
    DxfReader(DXF& drawing, DxfByteSource& source) : m_drawing(drawing), m_tags(source) {}

    /// Reads to the end. Throws only when memory runs out; the drawing is sound then, and Finish may follow.
    void Run();
    /// How it ended, once Run is over. `failure`: why it could not go on, or empty.
    DxfReadResult Finish(const std::string& failure) const;

private:
    /// What the groups of any entity may say.
    struct Common {
        DxfLayer*     layer = nullptr;
        std::int16_t  color = 256;
        bool          paperSpace = false;
        bool          embedded = false;    // inside an object of its own that some entities carry
        double        extrusion[3] = {0, 0, 1};
        bool          bad = false;         // to be dropped,
        DxfDropReason reason{};            // for this
        const DxfKind* kind = nullptr;
        std::uint64_t line = 0, byte = 0;  // where it begins
        bool TurnedOver() const;
        void Drop(DxfDropReason why);
    };
    struct TextHash : std::hash<std::string_view> {
        using is_transparent = void;
    };
    template <class T>
    using TextMap = std::unordered_map<std::string, T, TextHash, std::equal_to<>>;

    // Each of these starts at the group of code 0 that opens its record, and ends at the next one of code 0,
    // which is then the current group; or at the end of the file (m_bMore false).
    void ReadSection();
    void ReadHeader();
    void ReadTables();
    void ReadLayerRecord();
    void ReadEntities();
    void ReadEntity();
    void ReadLine();
    void ReadText();
    void ReadCircle();
    void ReadArc();
    void ReadPolyline();
    void ReadVertex(Common& polyline);
    void ReadLwPolyline();
    void ReadSolid(bool is3dFace);
    void ReadInsert();
    void ReadDimension();
    void ReadHatch();
    void ReadOther();
    void SkipRecord();

    bool Next() { return m_bMore = m_tags.Next(); }
    bool AtSectionEnd() const;
    Common Begin();
    bool NextGroup(Common& common);
    void TakeCommonGroup(Common& common);
    void CheckReal(Common& common);
    bool SkipGroupsInBraces();
    template <class T>
    void Take(const Common& common, const T& entity, bool complete);
    void TakePolyline(const Common& common, bool closed, bool is3D, bool flipped, bool complete);
    void AddEntity(const Common& common, ACAD_ENTITY* entity);
    void NoteDrop(const Common& common);

    DxfLayer* LayerNamed(std::string_view raw);
    DxfKind* KindNamed(std::string_view raw);
    std::string Decoded(std::string_view raw) const;
    std::string_view StoredText(std::string_view raw);

    DXF&          m_drawing;
    DxfTagScanner m_tags;
    bool          m_bMore = false;        // there is a current group
    bool          m_bNotDxf = false;
    bool          m_bTooMany = false;     // more entities than a list can count
    bool          m_bEntitiesSeen = false;
    const char*   m_szSection = nullptr;  // the section that is open, for the report
    std::vector<ACAD_VERTEX> m_vertices;  // of the polyline being read

    // Names as the file has them; the recent ones are found by length and last letters.
    struct Recent {
        std::string_view raw;
        DxfLayer* layer = nullptr;
    };
    std::array<Recent, 64> m_recent;
    TextMap<DxfLayer*> m_layerOfRaw;
    TextMap<DxfLayer*> m_layerOfName;
    TextMap<DxfKind*> m_kindOfRaw;
};
