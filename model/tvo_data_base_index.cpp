// Keeping the spatial index, and looking at it.
#include <filesystem>

#include "model/draw_graph.h"
#include "model/goujian.h"
#include "model/goujian_grid.h"
#include "model/grid_index_service_object.h"
#include "model/tvo_data_base.h"
#include "platform/canvas/client_dc.h"
#include "platform/canvas/pen.h"
#include "platform/window.h"
#include "shell/tvo_frame_base.h"
#include "view/tvo_view_mgr.h"

namespace {

// From how many pending components on the user sees that something is going on.
constexpr int kShowProgressFrom = 1001;
bool g_bShowIndexProgress = false;

void TellFrame(void* frame, int percent) { static_cast<CTvoFrameBase*>(frame)->ShowProgress(percent); }

}  // namespace

void CTvoDataBase::BringIndexUpToDate() {
    const bool tell = g_bShowIndexProgress && m_pFrame;
    m_pIndex->WorkOffPool(tell ? TellFrame : nullptr, m_pFrame);
}

CGridIndexServiceObject& CTvoDataBase::ReadyIndex() {
    BringIndexUpToDate();
    return *m_pIndex;
}

void CTvoDataBase::FinishIndex() { BringIndexUpToDate(); }

void CTvoDataBase::WAIT_FOR_COMPLETE_INDEX() {
    m_hSavedCursor = 0;
    g_bShowIndexProgress = m_pIndex->GetPoolCount() >= kShowProgressFrom;
    m_bWaitCursorShown = g_bShowIndexProgress;
    if (!g_bShowIndexProgress) return;
    m_hSavedCursor = SetCursor(IDC_WAIT);
    if (m_pFrame) m_pFrame->AppendPromptText("正在计算,请稍等...");
}

void CTvoDataBase::RESTORE_CURSOR() {
    // Also when there was none before: the wait cursor would stay for good. One that a host shows stays.
    if (m_bWaitCursorShown) {
        SetCursor(m_hSavedCursor);
        if (m_pFrame) m_pFrame->ShutDownProgress();  // the work that was shown is done
    }
    m_bWaitCursorShown = false;
    m_hSavedCursor = 0;
}

// --- for debugging ----------------------------------------------------------------------------------------

void CTvoDataBase::DrawGouJianByIndex(int seq, CTvoViewKernel* view) {
    CGouJianGrid* grid = view ? ReadyIndex().GetGrid(seq) : nullptr;
    if (!grid) return;
    CClientDC dc(view);
    CPen pen(PS_SOLID, 1, RGB(255, 255, 255));
    CPen* before = dc.SelectObject(&pen);
    grid->m_mapGouJian.ForEach([&](unsigned long, CGouJianEx* obj) {
        for (CGraphEntity* entity : obj->GetDrawGraph()->m_aEntity) entity->Draw(&dc, &view->m_cCoor);
    });
    dc.SelectObject(before);
}

// Where an address would tell cells and components apart, their numbers do: the file is the same every time.
void CTvoDataBase::DisplayIndexResult() {
    CGridIndexServiceObject& index = ReadyIndex();
    std::error_code failed;
    const std::filesystem::path folder = std::filesystem::temp_directory_path(failed);
    std::FILE* f = failed ? nullptr : std::fopen((folder / "IndexResult.Txt").c_str(), "w");
    if (!f) return;
    std::fprintf(f, "Index Result:\n");
    const long long cells = static_cast<long long>(index.m_nCols) * index.m_nRows;
    for (int seq = 0; seq < std::min<long long>(cells, 1'000'000); ++seq) {
        CGouJianGrid* grid = index.GetGrid(seq);
        if (!grid || grid->m_mapGouJian.IsEmpty()) continue;
        std::fprintf(f, "Grid Seq#%d(%X), Num of GouJian:%d\n", seq, static_cast<unsigned>(seq), grid->m_mapGouJian.GetCount());
        int no = 0;
        grid->m_mapGouJian.ForEach([&](unsigned long id, CGouJianEx* obj) {
            std::fprintf(f, "\tNo%5d:ID=%d,(Type=%d,\tBH=%d)\n", ++no, static_cast<int>(id), obj->get_Gjlx(),
                         static_cast<int>(obj->get_m_dwGouJianNO()));
        });
    }
    for (POSITION p = m_cContain.GetHeadPosition(); p;) {
        CGouJianEx* obj = m_cContain.GetNext(p);
        if (obj->IsPhysicalGouJian())
            std::fprintf(f, "GouJian To Grid(%X): Type=%d,\tBH=%d\n", obj->get_m_dwGouJianID(), obj->get_Gjlx(),
                         static_cast<int>(obj->get_m_dwGouJianNO()));
    }
    std::fclose(f);
}

void CTvoDataBase::DisplayDebugInfo() {
    CString text;
    text.Format("INDEX POOL COUNT = %d", m_pIndex->GetPoolCount());
    if (m_pFrame) m_pFrame->AppendPromptText(text);
}
