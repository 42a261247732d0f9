#include "platform/dxf/dxf.h"

#include <exception>

#include "platform/dxf/base_sgt.h"
#include "platform/dxf/dxf_reader.h"
#include "platform/dxf/dxf_source.h"

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

DXF* NewMemDxf(CBase_SGT* sgt) {
    if (!sgt) return new DXF;
    sgt->Close();
    return sgt;
}
