#include "platform/dxf/dxf.h"

#include <algorithm>
#include <exception>

#include "platform/dxf/base_sgt.h"
#include "platform/dxf/dxf_reader.h"
#include "platform/dxf/dxf_source.h"
#include "platform/dxf/dxf_writer.h"
#include "platform/string.h"
#include "platform/whole_file.h"

DXF::DXF() = default;
DXF::~DXF() = default;

void DXF::Close() {
    CArray<ACAD_ENTITY*>().Swap(m_arrEntity);
    m_arena.Clear();
    m_layers.clear();
    m_kinds.clear();
    m_header = {};
    m_result = {};
    m_drops.clear();
    for (auto& n : m_nDropped) n = 0;
    m_styles.clear();
    m_lineTypes.clear();
    m_bTablesDone = false;
    m_pDrawLayer = nullptr;
    for (auto& kind : m_apDrawnKind) kind = nullptr;
}

int DXF::Read_FileDxf_To_Mem(const char* path) {
    DxfByteSource source(path);
    return Read(source);
}

int DXF::Read_Bytes_To_Mem(std::string_view bytes) {
    DxfByteSource source(bytes);
    return Read(source);
}

int DXF::Read(DxfByteSource& source) {
    Close();
    if (!source.IsOpen()) {
        m_result.m_eOutcome = DxfOutcome::CannotOpen;
        m_result.m_strReason = source.Error();
        return 0;
    }
    std::string failure;
    try {
        DxfReader reader(*this, source);
        try {
            reader.Run();
        } catch (const std::exception&) {  // what was taken before is whole
            failure = "out of memory";
        }
        m_result = reader.Finish(failure.empty() ? source.Error() : failure);
    } catch (const std::exception&) {
        m_result.m_eOutcome = DxfOutcome::Truncated;
    }
    return m_result.Ok() ? 1 : 0;
}

// --- writing ----------------------------------------------------------------------------------------------

int DXF::New_MemDxf() {
    Close();
    LayerZero();
    return 1;
}

DxfLayer& DXF::LayerZero() {
    constexpr std::string_view kName = "0";
    const auto at = std::find_if(m_layers.begin(), m_layers.end(), [&](const DxfLayer& l) { return l.m_strName == kName; });
    if (at != m_layers.end()) return *at;
    DxfLayer& layer = m_layers.emplace_back();
    layer.m_strName = std::string(kName);
    layer.m_bInTable = true;
    return layer;
}

ACAD_STYLE* DXF::Add_STyle(const char* name, const char* font, const char* bigFont, float height, float widthFactor) {
    constexpr std::size_t kMost = 254;  // entities number them by a byte
    if (m_bTablesDone || !name || !*name) return nullptr;
    const auto same = [&](const ACAD_STYLE& style) { return CString(style.m_strName).CompareNoCase(name) == 0; };
    auto at = std::find_if(m_styles.begin(), m_styles.end(), same);
    if (at == m_styles.end()) {
        if (m_styles.size() == kMost) return nullptr;
        at = m_styles.emplace(m_styles.end());
        at->m_strName = name;
    }
    at->m_strFont = font ? font : "";
    at->m_strBigFont = bigFont ? bigFont : "";
    at->m_fHeight = height;
    at->m_fWidthFactor = widthFactor;
    return &*at;
}

int DXF::Write_Tables() {
    if (m_bTablesDone) return 0;
    m_bTablesDone = true;
    return 1;
}

int DXF::Write_MemDxf_To_File(const char* path) {
    m_strWriteError = path && *path ? ReplaceWholeFile(path, [&](const std::string& name) { return WriteDxf(*this, name); })
                                    : "no path";
    return m_strWriteError.empty() ? 1 : 0;
}

DXF* NewMemDxf(CBase_SGT* sgt) {
    if (!sgt) return new DXF;
    sgt->Close();
    return sgt;
}
