#include "model/dxf_export.h"

#include <array>
#include <cstddef>
#include <memory>

#include "model/by_identity.h"
#include "model/draw_graph.h"
#include "model/paths.h"
#include "model/tvo_data_base.h"
#include "platform/acad_color.h"
#include "platform/dxf/base_sgt.h"
#include "platform/file_dialog.h"
#include "shell/tvo_frame_base.h"
#include "view/tvo_view_mgr.h"

namespace {

constexpr int kDashDotted = 1;  // the one line type that reaches the file

void DrawPrimitive(CBase_SGT& drawing, CGraphEntity& entity, CFCoor& coor) {
    const int lineType = drawing.SaveCurLType();
    if (entity.m_nLineType == kDashDotted) drawing.SetCurLType("DASHDOT");
    const COLORREF color = entity.m_dwColor;
    drawing.SetCurColor(RGB2AcadIndex(GetRValue(color), GetGValue(color), GetBValue(color)));
    entity.DrawDXF(&drawing, &coor);
    drawing.RestoreCurLType(lineType);
}

void DrawComponent(CBase_SGT& drawing, CGouJianEx& component, CFCoor& coor) {
    if (!component.IsVisable()) return;
    if (component.SelfOutPutDXF()) {
        component.OutPutDXF(&drawing, &coor);
        return;
    }
    CDrawGraph& graph = *component.GetDrawGraph();
    for (CGraphEntity* entity : graph.m_aEntity) {
        if (!graph.m_bFixed) graph.TakeDrawInfo(*entity, component);
        DrawPrimitive(drawing, *entity, coor);
    }
}

}  // namespace

DxfExportResult ExportDxf(CTvoDataBase& db, const std::string& path, DxfVersion version, CFCoor& coor) {
    const auto drawing = std::make_unique<CBase_SGT>();
    drawing->SetWriteVersion(version);
    drawing->New_MemDxf();
    drawing->Add_Default_LineType();
    drawing->Add_STyle("HZ", "txt", "hztxt", 0.0f, 0.75f);
    drawing->Write_Tables();
    for (int type = 1; type < kTypeCount - 1; ++type) {  // 255 is never written out
        if (g_pFrame) g_pFrame->ShowProgress(static_cast<int>(type / 255.0 * 100.0));
        for (CGouJianEx* component : ByIdentity(db.m_mapFamily[type]))
            DrawComponent(*drawing, *component, coor);
    }
    if (g_pFrame) g_pFrame->ShutDownProgress();
    DxfExportResult result;
    result.entities = drawing->GetEntityCount();
    result.written = drawing->Write_MemDxf_To_File(path.c_str());
    result.reason = drawing->GetWriteError();
    return result;
}

// An error in writing is not told: the answer is whether the user went on from the dialog.
int CTvoDataBase::Write_DXF(CWnd* parent) {
    constexpr char kFilter[] = "AutoCAD交换文件(*.DXF)\0*.DXF\0";  // the literal's own 0 ends the list
    std::array<char, 256> path{};
    OPENFILENAME request;
    request.hwndOwner = parent;
    request.lpstrFilter = kFilter;
    request.lpstrFile = path.data();
    request.nMaxFile = path.size();
    request.Flags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT;
    if (!GetSaveFileNameA(&request)) return 0;
    path.back() = 0;
    CFCoor plain;
    CFCoor& coor = g_pCurrentView ? g_pCurrentView->m_cCoor : plain;
    ExportDxf(*this, ConfirmFileExt(path.data(), "dxf").Std(), DxfVersion::R12, coor);
    return 1;
}
