// CTvoFrameBase: what it tells the user: prompt, status bar, progress.
#include "shell/frame_sink.h"
#include "shell/prompt_view.h"
#include "shell/tvo_frame_base.h"
#include "view/tvo_view_mgr.h"

namespace {

constexpr unsigned kTickTimer = 1;
constexpr int kTickMilliseconds = 50;
constexpr char kTicks[] = "|\\-/|\\-/";

}  // namespace

// ---- prompt -----------------------------------------------------------------------------------------------

void CTvoFrameBase::AppendPromptText(const CString& text) {
    if (m_pSink && text.Find("qe_inter_cmd_") < 0) m_pSink->OnPromptText(text);
    if (m_pPrompt) m_pPrompt->AppendPromptText(text);
    m_log.Write(text);
}

void CTvoFrameBase::SetPromptText(const CString& text) {
    if (m_pPrompt) m_pPrompt->AddPromptText(text, 0);
}

void CTvoFrameBase::RestoreParaPrompt() {
    if (m_pPrompt) m_pPrompt->RestoreParaPrompt();
}

CString CTvoFrameBase::GetInput() const { return m_pPrompt ? m_pPrompt->GetInput() : CString(); }

void CTvoFrameBase::FocusToCommandLine() {
    if (m_pPrompt) m_pPrompt->m_cInput.SetFocus();
}

void CTvoFrameBase::PostKeyToCommandLine(UINT key) {
    if (m_pPrompt) m_pPrompt->m_cInput.PostMessage(WM_KEYDOWN, key, 1);
}

// ---- the turning sign -------------------------------------------------------------------------------------

void CTvoFrameBase::SetTickTagMode(int on) {
    if (!m_pPrompt || (on != 0) == (m_nTickMode != 0)) return;
    m_nTickMode = on != 0;
    if (on) {
        m_nTick = m_bTickShown = 0;
        SetTimer(kTickTimer, kTickMilliseconds);
        return;
    }
    KillTimer(kTickTimer);
    if (!m_bTickShown) return;
    CString text = m_pPrompt->m_cOutput.GetWindowText();
    TakeTickOff(text);
    m_pPrompt->m_cOutput.SetWindowText(text);
    m_pPrompt->m_cOutput.ScrollToEnd();
    m_bTickShown = 0;
}

// A line that came meanwhile has had the history written anew, without the sign: nothing is taken off then.
void CTvoFrameBase::TakeTickOff(CString& text) const {
    if (m_bTickShown && m_nTickedDisplay == m_pPrompt->m_nDisplays && !text.IsEmpty()) text.Delete(text.GetLength() - 1);
}

void CTvoFrameBase::OnTimer(unsigned id) {
    if (id != kTickTimer || !m_nTickMode || !m_pPrompt) return;
    if (m_pPrompt->m_aHistory.IsEmpty()) m_pPrompt->AppendPromptText("");
    CEdit& output = m_pPrompt->m_cOutput;
    CString text = output.GetWindowText();
    TakeTickOff(text);
    text += kTicks[m_nTick++ % 8];
    output.SetWindowText(text);
    output.ScrollToEnd();
    m_bTickShown = 1;
    m_nTickedDisplay = m_pPrompt->m_nDisplays;
}

// ---- status bar -------------------------------------------------------------------------------------------

void CTvoFrameBase::SetLocate(const CFPoint& at) {
    if (m_pView && m_pView->m_bShowCoordinate) m_cStatusBar.ShowCoordinate(at);
}

void CTvoFrameBase::SetOffset(const CFPoint& offset) {
    if (m_pView && m_pView->m_bShowCoordinate) m_cStatusBar.ShowOffset(offset);
}

void CTvoFrameBase::SetStatusPrompt(const CString& text) { m_cStatusBar.SetPromptText(text); }
void CTvoFrameBase::SetMouseMovePrompt(const CString& text) { m_cStatusBar.SetMouseMovePrompt(text); }

void CTvoFrameBase::SetMouseMousePromptText(float x, float y) {
    if (m_bClosing) return;
    if (const char* text = GetMMP_Text(x, y)) SetMouseMovePrompt(text);
}

void CTvoFrameBase::SyncStsToStatusBar() {
    m_cStatusBar.m_pView = m_pView;
    m_cStatusBar.SyncStsFromView();
}

void CTvoFrameBase::ShowProgress(int percent) {
    if (m_pSink) m_pSink->OnProgress(percent);
    m_cStatusBar.ShowProgress(percent);
}

void CTvoFrameBase::ShutDownProgress() {
    if (m_pSink) m_pSink->OnProgressEnd();
    m_cStatusBar.ShutDownProgressCtrl();
}
