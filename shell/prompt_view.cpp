#include "shell/prompt_view.h"

#include <algorithm>
#include <string>

#include "model/profile.h"
#include "platform/canvas/client_dc.h"
#include "platform/canvas/system_metrics.h"
#include "platform/code_page.h"
#include "platform/gbk.h"
#include "shell/cmd_map.h"
#include "shell/scr_menu_data.h"
#include "shell/tvo_frame_base.h"
#include "view/rubber_line.h"
#include "view/select_command.h"
#include "view/tvo_view_mgr.h"

CString g_strPrompt = "命令:";

namespace {

constexpr int kLineHeight = 17;     // of the bottom line, pixels
constexpr int kFontHeight = 13;     // 8 points with their leading, at 96 dots an inch
constexpr int kLeastInput = 40;     // width that the input line keeps, pixels
constexpr int kMostLines = 100;     // of the history, before one more comes
constexpr std::size_t kMostTyped = 500;  // bytes of GBK of a line that reach a command

const CString kIdlePrompt = "命令:";

/// The code of an F key with the modifiers that are held: Ctrl 1 to 12, Shift 13 to 24, alone 25 to 36; 0 for both, which
/// is no code, and for other keys.
unsigned FunctionCode(UINT key) {
    if (key < VK_F1 || key > VK_F12) return 0;
    const unsigned n = key - VK_F1 + 1;
    const bool shift = IsKeyDown(VK_SHIFT), control = IsKeyDown(VK_CONTROL);
    if (shift && control) return 0;
    return control ? n : shift ? 12 + n : 24 + n;
}

std::string Cut(const CString& text) {
    std::string cut = text.GetString();
    cut.resize(GbkCutLength(cut, kMostTyped));
    return cut;
}

}  // namespace

// ---- history and prompt -----------------------------------------------------------------------------------

CPromptView::~CPromptView() { DestroyWindow(); }

void CPromptView::__AddPrompttext(const CString& text) {
    if (text.Find("qe_inter_cmd_") >= 0) return;
    if (m_aHistory.GetSize() > kMostLines) m_aHistory.RemoveAt(0);
    m_aHistory.Add(text);
}

void CPromptView::AppendPromptText(const CString& text) {
    __AddPrompttext(text);
    Display();
}

void CPromptView::AddPromptText(const CString& text, int mode) {
    if (mode == 1) {
        CString input = GetInput();
        input.Trim();
        if (!input.IsEmpty()) __AddPrompttext(g_strPrompt + " " + input);
    } else {
        if (g_strPrompt != kIdlePrompt && !g_strPrompt.IsEmpty() && !m_bInInput) __AddPrompttext(g_strPrompt);
        g_strPrompt = text;
    }
    Display();
}

void CPromptView::SetParaPrompt(const CString& text) {
    g_strPrompt = text;
    RePositionParaPrompt();
    Invalidate();
}

void CPromptView::RestoreParaPrompt() { SetParaPrompt(kIdlePrompt); }

void CPromptView::Display() {
    ++m_nDisplays;
    CString all;
    for (int i = 0; i < m_aHistory.GetSize(); ++i) {
        if (i > 0) all += "\r\n";
        all += m_aHistory[i];
    }
    m_cOutput.SetWindowText(all);
    m_cOutput.ScrollToEnd();
    RePositionParaPrompt();
    Invalidate();
}

// ---- the pane ---------------------------------------------------------------------------------------------

int CPromptView::OnCreate() {
    m_cFont.CreateFont(kFontHeight, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 4, 0, "Courier");
    m_cOutput.m_pPromptView = m_cInput.m_pPromptView = this;
    return 0;
}

void CPromptView::OnInitialUpdate() {
    m_cOutput.Create(this, m_rcOutput, WindowKind::kEditLog);
    m_cInput.Create(this, m_rcInput, WindowKind::kEditLine);
    AppendPromptText(g_cTvoProfile.m_strWelcome);
    m_cInput.PostMessage(WM_KEYDOWN, VK_F5);  // the view shows all at the start
}

void CPromptView::OnSize(int, int) { RePositionParaPrompt(); }

// The input line begins behind the prompt, and moves when this changes.
void CPromptView::RePositionParaPrompt() {
    const CRect client = GetClientRect();
    CClientDC dc(IsWindow() ? this : nullptr);
    CFont* const old = dc.SelectObject(&m_cFont);
    // However long the prompt, there is room to type.
    const int left = std::min(client.left + dc.GetTextExtent(g_strPrompt).cx + 5, std::max(client.left, client.right - kLeastInput));
    dc.SelectObject(old);
    const int top = client.bottom - kLineHeight;
    m_rcInput = CRect(left, top, std::max(client.right, left), client.bottom);
    m_rcOutput = CRect(client.left, client.top, client.right, std::max(client.top, top - 1));
    m_cInput.MoveWindow(m_rcInput);
    m_cOutput.MoveWindow(m_rcOutput);
}

void CPromptView::OnDraw(CDC* dc) {
    const CRect client = GetClientRect();
    const int top = client.bottom - kLineHeight;
    CBrush ground(GetSysColor(COLOR_WINDOW));
    dc->FillRect(CRect(client.left, top, client.right, client.bottom), &ground);
    CFont* const old = dc->SelectObject(&m_cFont);
    const int mode = dc->SetBkMode(TRANSPARENT);
    const COLORREF ink = dc->SetTextColor(GetSysColor(COLOR_WINDOWTEXT));
    dc->TextOut(0, top + 1, g_strPrompt);
    dc->SetTextColor(ink);
    dc->SetBkMode(mode);
    dc->SelectObject(old);
    const COLORREF line = GetSysColor(COLOR_PROMPT_LINE);
    for (int x = client.left; x < client.right; x += 2) dc->SetPixel(x, top, line);
}

BOOL CPromptView::OnMouseWheel(UINT keys, int delta, CPoint screen) {
    CTvoViewMgr* const view = m_pFrame ? m_pFrame->GetDtView() : nullptr;
    if (!view || !view->GetWindowRect().PtInRect(screen)) return 0;
    view->PostMessage(WM_MOUSEWHEEL, WheelParam(keys, delta), PointParam(screen));
    return 1;
}

BOOL CResultOutput::OnMouseWheel(UINT keys, int delta, CPoint screen) {
    return m_pPromptView ? m_pPromptView->OnMouseWheel(keys, delta, screen) : 0;
}

// With the focus here as ever the wheel is still the view's.
BOOL CPromptInput::OnMouseWheel(UINT keys, int delta, CPoint screen) {
    return m_pPromptView ? m_pPromptView->OnMouseWheel(keys, delta, screen) : 0;
}

// The key of the character, letters as capitals: its code would be that of an F key or an arrow.
void CResultOutput::OnKeyDown(UINT key, LPARAM flags) {
    if (m_pPromptView && key >= VK_F1 && key <= VK_F12) m_pPromptView->m_cInput.SendMessage(WM_KEYDOWN, key, flags);
}

void CResultOutput::OnChar(UINT code) {
    if (!m_pPromptView) return;
    CPromptInput& input = m_pPromptView->m_cInput;
    const UINT key = code >= 'a' && code <= 'z' ? code - 'a' + 'A' : code;
    if (code == VK_ESCAPE) {
        input.SendMessage(WM_KEYDOWN, VK_ESCAPE);
        return;
    }
    input.SetFocus();
    const bool isKey = code == VK_RETURN || code == VK_SPACE || code == VK_TAB || (key >= 'A' && key <= 'Z') ||
                       (key >= '0' && key <= '9');
    if (isKey) input.SendMessage(WM_KEYDOWN, key);
    if (code < 32 || code == VK_SPACE) return;
    std::string text;
    AppendUtf8(text, code);
    input.AppendText(CString(text));
}

// ---- keys -------------------------------------------------------------------------------------------------

void CPromptInput::OnChar(UINT code) {
    if (code == VK_RETURN || code == VK_SPACE || code == VK_TAB || code == VK_ESCAPE) return;
    CEdit::OnChar(code);
}

void CPromptInput::OnKeyDown(UINT key, LPARAM flags) {
    CTvoFrameBase* const frame = m_pPromptView ? m_pPromptView->m_pFrame : nullptr;
    CTvoViewMgr* const view = frame ? frame->GetDtView() : nullptr;
    if (!view) return;
    CString text = GetWindowText();
    text.Trim();
    const unsigned code = FunctionCode(key);
    if (!(code && view->ResponseFunctionKey(code))) {
        switch (key) {
            case VK_TAB:
                if (view->IsBusy() && view->_Can_Select()) view->_Svr_SwitchToNextSelectMethod();
                break;
            case VK_RETURN:
            case VK_SPACE: OnEnter(*view, key, text); break;
            case VK_ESCAPE: OnEscape(*view, text); break;
            case VK_LEFT:
            case VK_UP:
            case VK_RIGHT:
            case VK_DOWN: view->SetCursorByKbd(static_cast<int>(key)); break;
            case VK_F2: view->_Svr_SwitchGridSnap(); break;
            case VK_F3: view->_Svr_SwitchObjectSnap(); break;
            case VK_F4: view->_Svr_SwitchAngleSnap(); break;
            case VK_F5: view->_Svr_ShowAll(); break;
            case VK_F6: view->_Svr_SwitchCoordDisplay(); break;
            case VK_F7: view->_Svr_SwitchGridDisplay(); break;
            case VK_F8: view->_Svr_SwitchOrthoSnap(); break;
            default:
                if (text.IsEmpty()) frame->SendMessage(WM_KEYDOWN, key, flags);  // a host's own keys
                break;
        }
    }
    SetFocus();
}

// The line is emptied first, the command goes on; a second one cancels it.
void CPromptInput::OnEscape(CTvoViewMgr& view, const CString& text) {
    if (text.IsEmpty()) {
        view.SendMessage(WM_DTVIEW_WORK, DTW_CANCEL);
        return;
    }
    m_pPromptView->AppendPromptText(CString("*") + text + " 取消*");
    SetWindowText("");
}

// Enter in a selection asks the command that waits for it. True: that was all.
bool CPromptInput::AnswerSelection(CTvoViewMgr& view, const CString& text) {
    if (!view.IsSelecting()) return false;
    CDtWorkEx* command = static_cast<CSelectCommand*>(view.m_pWork)->m_pOwner;
    if (COperStackItem top; !command && view.PeekViewStack(top)) command = top.m_pWork;
    if (!command) {
        view.SendMessage(WM_DTVIEW_WORK, DTW_NORMAL);
        return true;
    }
    unsigned answer = 0;
    bool stands = view.Called(command, [&] { answer = command->OnQueryState(); });
    if (!stands || !(answer & QS_TEXT)) return true;
    std::string typed = Cut(text);
    stands = view.Called(command, [&] { answer = command->OnGetObject(OH_TEXT, typed.data(), 0); });
    if (stands && command->m_pRubberLine) view.Invalidate();
    // One that has finished is cancelled before it is completed with all others, a quirk that hosts know; one that
    // cancels is cancelled with them.
    if (stands && answer == QS_FINISH) stands = view.Called(command, [&] { command->OnCancel(); });
    if (stands && (answer == QS_CANCEL || answer == QS_FINISH)) view.ReSetToInitialState(answer == QS_CANCEL);
    m_pPromptView->AppendPromptText(text);
    SetWindowText("");
    return true;
}

void CPromptInput::OnEnter(CTvoViewMgr& view, UINT key, const CString& text) {
    if (AnswerSelection(view, text)) return;
    if ((view.m_nObjectHint & QS_POINT) && text.IsEmpty()) {
        view.SetCursorByKbd(static_cast<int>(key));
        return;
    }
    if ((view.m_nObjectHint & QS_TEXT) && text.IsEmpty()) {
        view.SendMessage(WM_DTVIEW_WORK, DTW_INPUT, reinterpret_cast<LPARAM>(""));
        return;
    }
    int id = -1, data = 0;
    g_cCmdMap.GetCommandIDByString(text, id, data);
    if (text.IsEmpty() && id == -1) return;
    if (view.IsBusy()) {
        // A running command gets all that is typed, even a command's name.
        const std::string typed = Cut(text);
        view.SendMessage(WM_DTVIEW_WORK, DTW_INPUT, reinterpret_cast<LPARAM>(typed.c_str()));
    } else {
        if (id == -1) id = g_cScrnMenuData.GetCmdIdByCmdLine(text.GetString());
        if (id == -1) m_pPromptView->AppendPromptText(CString("***非法命令或参数: ") + text + "***");
        else RunCommand(view, id);
    }
    SetWindowText("");
}

void CPromptInput::RunCommand(CTvoViewMgr& view, int id) {
    m_pPromptView->AddPromptText("", 1);
    view.ReSetToInitialState(1);
    m_pPromptView->m_pFrame->InvokeAny(id);
}
