#include "view/dt_work_ex.h"

#include <utility>

#include "platform/canvas/client_dc.h"
#include "shell/prompt_view.h"
#include "shell/tvo_frame_base.h"
#include "view/cursors.h"
#include "view/rubber_line.h"
#include "view/select_command.h"
#include "view/tvo_view_kernel.h"

namespace {

void CopyTypes(CByteArray& to, const CByteArray& from) {
    if (&to == &from) return;
    to.RemoveAll();
    for (const std::uint8_t type : from) to.Add(type);
}

}  // namespace

CDtWorkEx::CDtWorkEx() : m_hCursor(g_hCursorNull) {}

CDtWorkEx::~CDtWorkEx() {
    delete m_pRubberLine;
    LeavePrompt();
}

// Setting the prompt anew moves the present one into the history.
void CDtWorkEx::LeavePrompt() {
    if (m_bLeft) return;
    m_bLeft = true;
    if (CPromptView* prompt = Prompt()) {
        if (m_bEchoPrompt == 1) SetPromptText(prompt->GetCurrentPrompt());
        prompt->RestoreParaPrompt();
    }
    if (CTvoFrameBase* frame = Frame()) frame->Invalidate();
}

CTvoFrameBase* CDtWorkEx::Frame() const { return m_pView ? m_pView->m_pFrame : nullptr; }

CPromptView* CDtWorkEx::Prompt() const {
    CTvoFrameBase* const frame = Frame();
    return frame ? frame->GetPromptView() : nullptr;
}

void CDtWorkEx::Run() {
    if (!m_pView) return;
    if (m_bSelectFirst) {
        m_nSelectKind = 0;
        auto* const single = static_cast<CSelectCommand*>(m_pView->m_pSelectCommand[0]);
        if (!single) return;
        CDtWorkEx* const before = std::exchange(single->m_pOwner, nullptr);
        if (before && before != this) m_pView->EndLife(before);
        SetPromptText(m_strPrompt);
        single->m_pOwner = this;
        single->TakeFilter(m_byteFilter, m_aFilter);
        single->Run();
        return;
    }
    COperStackItem item;
    item.m_pWork = this;
    item.m_nWorkState = 1;
    item.m_nWorkMessage = WM_DTVIEW_WORK;
    item.m_nObjectHint = static_cast<std::uint32_t>(m_nObjectHint);
    item.m_nSelectKind = m_nSelectKind;
    item.m_byteFilter = m_byteFilter;
    CopyTypes(item.m_aFilter, m_aFilter);
    if (m_nObjectHint & QS_SELECT) m_pView->m_bKeepSelected = 1;
    if (!IsSelectCommand()) SetPromptText(m_strPrompt);
    else if (!m_pView->m_pWork || !m_pView->m_pWork->m_bSelectFirst) AppendPromptText(m_strPrompt);
    m_pView->SwitchState(item, DTW_START);
}

void CDtWorkEx::OnComplete() {
    if (CTvoFrameBase* frame = Frame()) frame->ShutDownProgress();
    m_bEchoPrompt = m_bHasDefault;
}

void CDtWorkEx::OnCancel() {
    if (CPromptView* prompt = Prompt()) prompt->RestoreParaPrompt();
    m_bEchoPrompt = 1;
}

void CDtWorkEx::DrawCursor(CTvoViewKernel* view, CFPoint& at, CDC* dc) {
    const CPoint p = view->PixelOf(at);
    const CRect client = view->GetClientRect();
    dc->MoveTo(0, p.y);
    dc->LineTo(client.right, p.y);
    dc->MoveTo(p.x, 0);
    dc->LineTo(p.x, client.bottom);
}

CFPoint CDtWorkEx::QueryAngleSnapPoint() {
    return m_pView && m_pView->m_nInputPoint > 0 ? m_pView->m_aInputPoint[m_pView->m_nInputPoint - 1] : CFPoint();
}

void CDtWorkEx::SetPromptText(const CString& text) {
    m_strPrompt = text;
    if (CPromptView* prompt = Prompt()) prompt->AddPromptText(text, 0);
}

void CDtWorkEx::AppendPromptText(const CString& text) {
    CString trimmed = text;
    trimmed.Trim();
    CPromptView* const prompt = Prompt();
    if (prompt && !trimmed.IsEmpty()) prompt->AppendPromptText(trimmed);
}

unsigned CDtWorkEx::SwitchToSelectCommand(int kind, unsigned char filter, const CByteArray* filters) {
    m_nSelectKind = kind;
    m_byteFilter = filter;
    if (filters) CopyTypes(m_aFilter, *filters);
    if (m_pView) {
        m_pView->m_nSelectKind = kind;
        m_pView->m_byteFilter = filter;
        if (filters) CopyTypes(m_pView->m_aFilter, *filters);
    }
    return QS_SELECT;
}

void CDtWorkEx::SwitchRubberLine(CRubberLine* line, int draw) {
    if (line != m_pRubberLine) delete m_pRubberLine;
    m_pRubberLine = line;
    if (!line) return;
    line->m_pWork = this;
    if (draw != 1 || !m_pView) return;
    CClientDC dc(m_pView);
    m_pView->DrawRubberLine(&dc);
}

void CDtWorkEx::RemoveRubberLine() {
    delete m_pRubberLine;
    m_pRubberLine = nullptr;
}

void CDtWorkEx::ShowProgress(int percent) {
    if (CTvoFrameBase* frame = Frame()) frame->ShowProgress(percent);
}
