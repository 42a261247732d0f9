// A drawing in memory, read from a DXF file or to be written to one.
#pragma once
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "platform/containers.h"
#include "platform/dxf/acad_entity.h"
#include "platform/dxf/acad_style.h"
#include "platform/dxf/arena.h"

class CBase_SGT;
class DxfByteSource;

/// How a reading ended.
enum class DxfOutcome {
    None,        // nothing was read
    Ok,
    CannotOpen,  // no such file, no permission, no regular file, or reading it failed
    NotDxf,      // does not begin like a drawing
    Truncated,   // ends or breaks in the middle: what stands complete before that was taken
};

struct DxfReadResult {
    DxfOutcome    m_eOutcome = DxfOutcome::None;
    std::string   m_strReason;  // one phrase; empty when all is well
    std::uint64_t m_nByte = 0;  // where it ended: byte from the start of the file,
    std::uint64_t m_nLine = 0;  // and line from 1; 0 in a binary file
    bool Ok() const { return m_eOutcome == DxfOutcome::Ok; }
};

/// What the reading met, apart from the entities themselves.
struct DxfHeader {
    std::string m_strVersion;       // "AC1015"; empty if not given
    std::string m_strCodePage;      // as written, "ANSI_936"; empty if not given
    int         m_nCodePage = 0;    // 936; 0 if not given or not known
    int         m_nInsUnits = -1;   // 4 millimetres, 6 metres, ...; -1 if not given
    bool        m_bBinary = false;
    bool        m_bEndMark = false; // the file had its EOF
    std::uint64_t m_nBadLines = 0;  // lines of a text file where a group code should stand: passed over
    std::uint64_t m_nFirstBadLine = 0;
};

enum class DxfDropReason {
    NotFinite,    // a number is not finite
    TooFar,       // a coordinate or radius over 1e12
    NotANumber,   // text where a number must stand
};

/// An entity that was read but not taken.
struct DxfDrop {
    DxfDropReason   m_eReason = DxfDropReason::NotFinite;
    const DxfKind*  m_pKind = nullptr;
    const DxfLayer* m_pLayer = nullptr;
    std::uint64_t   m_nLine = 0;  // where the entity begins; 0 in a binary file
    std::uint64_t   m_nByte = 0;
};

/// The versions that are written: R12 is read by everything old, 2000 by everything of today; a few readers of
/// today have given R12 up.
enum class DxfVersion {
    R12,    // AC1009, no handles, no unit
    R2000,  // AC1015, with handles, light polylines and the millimetre as its unit
};

/// A drawing: its entities, layers and header, all of which it owns. It reads R10 to R2018, text and
/// binary. Reading never throws and asks no count in the file how much to allocate. It writes text, by way of
/// CBase_SGT, whose figures come out as they were drawn.
class DXF {
public:
    DXF();
    virtual ~DXF();
    DXF(const DXF&) = delete;
    DXF& operator=(const DXF&) = delete;

    // --- reading: what was there before is gone. 1 when all was read, else 0; GetResult tells more, and
    //     after Truncated the part before is there.
    int Read_FileDxf_To_Mem(const char* path);
    int Read_Bytes_To_Mem(std::string_view bytes);
    virtual void Close();  // empties the drawing; entities, layers, styles and kinds end here

    const DxfReadResult& GetResult() const { return m_result; }
    const DxfHeader& GetHeader() const { return m_header; }

    // --- the entities of all ENTITIES sections in the order of the file, model and paper space alike
    int GetEntityCount() const { return m_arrEntity.GetSize(); }
    const ACAD_ENTITY* GetEntity(int i) const { return m_arrEntity[i]; }
    const CArray<ACAD_ENTITY*>& GetEntities() const { return m_arrEntity; }

    // --- layers: those of the table first come, then in the order in which entities name them. Names that
    //     differ in ASCII case only are separate here, though they mean the same layer.
    const std::deque<DxfLayer>& GetLayers() const { return m_layers; }
    const std::deque<DxfKind>& GetKinds() const { return m_kinds; }

    // --- entities that were not taken: how many for each reason, and the first hundred one by one
    std::uint64_t GetDropCount(DxfDropReason reason) const { return m_nDropped[static_cast<int>(reason)]; }
    std::uint64_t GetDropCount() const { return m_nDropped[0] + m_nDropped[1] + m_nDropped[2]; }
    const std::vector<DxfDrop>& GetDrops() const { return m_drops; }

    // --- writing
    /// Empties the drawing and starts a new one, with layer "0". Always 1.
    int New_MemDxf();
    /// Adds a text style, or gives the one of that name these properties. Null once the tables are ended.
    ACAD_STYLE* Add_STyle(const char* name, const char* font, const char* bigFont, float height, float widthFactor);
    /// Ends the tables: what stands there now is all that the entities can name. 0 when they were ended before.
    int Write_Tables();
    /// Writes points, lines, arcs, circles, polylines and texts with tables and header; other kinds, which can only
    /// have been read from a file, are left out. The file is written beside and then takes its place: if that fails,
    /// the one that was there stays as it was. 1 when written, else 0 and GetWriteError tells why.
    int Write_MemDxf_To_File(const char* path);
    const std::string& GetWriteError() const { return m_strWriteError; }  // one phrase; empty when all went well
    void SetWriteVersion(DxfVersion version) { m_eWriteVersion = version; }  // R12 unless set; stays with the object
    DxfVersion GetWriteVersion() const { return m_eWriteVersion; }

    const std::deque<ACAD_STYLE>& GetStyles() const { return m_styles; }
    const std::vector<const DxfLineType*>& GetLineTypes() const { return m_lineTypes; }

private:
    friend class CBase_SGT;
    friend class DxfReader;
    int Read(DxfByteSource& source);
    DxfLayer& LayerZero();  // made if it isn't there

    CArray<ACAD_ENTITY*> m_arrEntity;        // in file order; they live in m_arena
    CArena               m_arena;            // entities, vertices, texts
    std::deque<DxfLayer> m_layers;           // addresses stay
    std::deque<DxfKind>  m_kinds;            // addresses stay
    DxfHeader            m_header;
    DxfReadResult        m_result;
    std::vector<DxfDrop> m_drops;            // the first hundred
    std::uint64_t        m_nDropped[3] = {}; // by reason
    std::deque<ACAD_STYLE> m_styles;         // addresses stay; of a drawing that is drawn
    std::vector<const DxfLineType*> m_lineTypes;  // standard ones; of a drawing that is drawn
    bool                 m_bTablesDone = false;
    const DxfLayer*      m_pDrawLayer = nullptr;                 // where drawn entities stand; found at the first
    const DxfKind*       m_apDrawnKind[kAcadPoint + 1] = {};     // of drawn entities, by type; made when needed
    DxfVersion           m_eWriteVersion = DxfVersion::R12;
    std::string          m_strWriteError;
};

/// A drawing in memory: a new one for null, to be deleted by the caller; else the writer itself, emptied.
DXF* NewMemDxf(CBase_SGT* sgt);
