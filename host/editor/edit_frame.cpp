#include "host/editor/edit_frame.h"

#include <algorithm>
#include <exception>
#include <new>

#include "host/edit_commands.h"
#include "host/editor/command_table.h"
#include "host/editor/document.h"
#include "host/editor/edit_view.h"
#include "host/editor/plate_paint.h"
#include "host/editor/reason_text.h"
#include "host/editor/session_recorder.h"
#include "host/editor/setting_dialogs.h"
#include "platform/number_text.h"
#include "platform/window_system.h"
#include "shell/cmd_map.h"
#include "shell/scr_menu_view.h"
#include "view/tvo_view_mgr.h"

CEditFrame::CEditFrame(CTvoHostDataBase& db) : m_db(db), m_document(std::make_unique<EditorDocument>(*this)) {
    m_db.m_pFrame = this;
    m_db.m_onDrawBelow = [this](CDC& dc, CFCoor& coor) { PaintPlates(m_db, dc, coor); };
}

CEditFrame::~CEditFrame() {
    if (m_recorder) m_recorder->StopWriting();
    BeginClosing();
    DestroyWindow();  // while OnDestroy is still this class's
    if (CWindowSystem* system = CWindowSystem::Current()) system->m_onIdle = nullptr;
    m_tools.clear();
    if (m_db.m_pFrame == this) m_db.m_pFrame = nullptr;
    m_db.m_onDrawBelow = nullptr;
}

void CEditFrame::Open(const CRect& place, const std::string& file) {
    AddEditorCommands();
    if (CWindowSystem* system = CWindowSystem::Current()) system->m_onIdle = [this] { OnIdle(); };
    Create(nullptr, place, WindowKind::kFrame);
    ReadLayout();
    CreatePanes(&m_db);
    View().m_bShowGrid = 0;  // it reaches far beyond most models
    // The prompt has F5 pressed at its start, which shows all with no room about it.
    if (CWindowSystem* system = CWindowSystem::Current()) system->Drain();
    ReadSnapSettings(View());
    SyncStsToStatusBar();
    m_recorder = std::make_unique<SessionRecorder>(*this);
    const std::string owner = TakeViewOwner();
    const bool opened = !file.empty() && m_document->Open(file);
    if (!opened) m_document->ShowSample();
    else if (owner == ViewOwner()) View().ReadLastCoordinateFromReg();
    FocusToCommandLine();
    m_recorder->Opened(file);
}

CTvoViewMgr* CEditFrame::GetGraphicView() { return new CEditView; }

// ---- commands ---------------------------------------------------------------------------------------------

void CEditFrame::InvokeCommand(int id, int arg) {
    CTvoFrameBase::InvokeCommand(id, arg);
    if (id == -1 || !GetDtView()) return;
    Guarded([&] {
        if (CDtWorkEx* const command = MakeEditCommand(id, m_db, View())) Start(command);
        else RunEditorCommand(*this, id);
    });
}

// What goes wrong in the midst of something is told; the editor goes on.
void CEditFrame::Guarded(const std::function<void()>& work) {
    try {
        work();
    } catch (const std::bad_alloc&) {
        Warn("内存不足, 命令没有完成");
    } catch (const std::exception& failure) {
        Warn("命令没有完成: " + MessageInChinese(failure.what()));
    }
}

void CEditFrame::OnKeyDown(UINT key, LPARAM) {
    // Ctrl and a letter, the command as it is typed.
    static constexpr struct {
        char key;
        const char* command;
    } kShortcuts[] = {{'N', "New"}, {'O', "Open"}, {'S', "Save"}, {'P', "Print"}, {'Z', "U"}, {'Y', "Re"}};
    if (!::IsKeyDown(VK_CONTROL)) return;
    for (const auto& shortcut : kShortcuts)
        if (key == static_cast<UINT>(shortcut.key)) {
            if (View().IsBusy()) View().ReSetToInitialState(1);
            int id = -1, data = 0;
            g_cCmdMap.GetCommandIDByString(shortcut.command, id, data);
            return InvokeAny(id);
        }
}

void CEditFrame::SetSnapOption() { AskSnapSwitches(View()); }

void CEditFrame::Start(CDtWorkEx* command) {
    command->m_pView = &View();
    command->m_pDataBase = &m_db;
    View().DoWork(command);
}

// ---- telling ----------------------------------------------------------------------------------------------

void CEditFrame::Tell(const std::string& text) { AppendPromptText(CString(text)); }

void CEditFrame::Warn(const std::string& text) {
    Tell(text);
    if (CWindowSystem* system = CWindowSystem::Current()) system->ShowMessage(text);
}

void CEditFrame::LeaveModel() {
    View().ReSetToInitialState(1);
    View().ClearSelectedList();
    CloseTool("check");     // its rows name places of the model that goes
    CloseTool("field-3d");  // it shows a field of that
}

void CEditFrame::ModelReplaced() {
    ShowWhole();
    View().m_nCoorHistory = 0;
    ModelChanged();
}

// With some room about it, so that what lies at the border can be seen and taken hold of.
void CEditFrame::ShowWhole() {
    CFRect box = m_db.GetFrect();
    const float room = 0.04f * std::max(box.m_fMaxX - box.m_fMinX, box.m_fMaxY - box.m_fMinY);
    View()._Fun_ShowRect({box.m_fMinX - room, box.m_fMinY - room, 0}, {box.m_fMaxX + room, box.m_fMaxY + room, 0}, 1, 1);
}

void CEditFrame::ModelChanged() {
    View().RefreshViewPort();
    View().m_bBaseMapDirty = 1;
    View().Invalidate();
    OnIdle();
}

// Whatever has changed the model, a command, a right click that ended one, undo: by the time when nothing is left to do
// after the event, it shows.
void CEditFrame::OnIdle() {
    if (!IsWindow()) return;
    m_document->FlushJournal();
    const std::string title = m_document->Title() + (m_recorder && m_recorder->IsWriting() ? " (记录中)" : "");
    if (title == m_title) return;
    m_title = title;
    SetWindowText(CString(title));
}

// ---- recordings -------------------------------------------------------------------------------------------

void CEditFrame::StartRecording(const std::string& path, bool fromStart) {
    if (!m_recorder) return;
    if (fromStart && m_recorder->KnowsStart()) return m_recorder->WriteTo(path, SessionRecorder::From::kStart);
    LeaveModel();  // a session begins with no command running, and no view to go back to
    View().m_nCoorHistory = 0;
    if (CScrMenuView* const menu = GetScrMenuView()) {
        menu->m_bFirstClick = 1;
        menu->m_nLastExpand = -1;
        menu->m_cClicked = menu->m_cHot = CScrMenuItem();
        g_cScrnMenuData.GetObjectByID(0, menu->m_cCurrent);
        menu->OnInitialUpdate();
    }
    for (const std::string& tool : ToolNames()) CloseTool(tool);
    m_recorder->WriteTo(path, SessionRecorder::From::kNow);
}

void CEditFrame::WillRead(const std::string& path) {
    if (m_recorder) m_recorder->WillRead(path);
}

// ---- windows beside ---------------------------------------------------------------------------------------

void CEditFrame::ShowTool(const std::string& name, std::unique_ptr<CWnd> tool, const CRect& place, const std::string& title) {
    CWnd& window = *tool;
    m_tools[name] = std::move(tool);
    window.Create(this, place, WindowKind::kTool);
    window.SetWindowText(CString(title));
}

CWnd* CEditFrame::Tool(const std::string& name) const {
    const auto found = m_tools.find(name);
    return found != m_tools.end() && found->second->IsWindow() ? found->second.get() : nullptr;
}

void CEditFrame::CloseTool(const std::string& name) {
    if (CWnd* const tool = Tool(name)) tool->DestroyWindow();
}

std::vector<std::string> CEditFrame::ToolNames() const {
    std::vector<std::string> names;
    for (const auto& [name, tool] : m_tools)
        if (tool->IsWindow()) names.push_back(name);
    return names;
}

std::vector<std::pair<std::string, CWnd*>> CEditFrame::OwnWindows() const {
    auto* const frame = const_cast<CEditFrame*>(this);
    return {{"menu", GetScrMenuView()}, {"bar", &frame->m_cStatusBar}, {"tools", &frame->m_cToolBar},
            {"rows", &frame->m_outer},   {"columns", &frame->m_inner}};
}

CWnd* CEditFrame::WindowNamed(const std::string& name) const {
    for (const auto& [own, window] : OwnWindows())
        if (name == own) return window;
    return Tool(name);
}

std::string CEditFrame::NameOf(const CWnd& window) const {
    for (const auto& [own, one] : OwnWindows())
        if (one == &window) return own;
    for (const auto& [name, tool] : m_tools)
        if (tool.get() == &window) return name;
    return {};
}

// ---- layout -----------------------------------------------------------------------------------------------

// What is missing, or would leave no room, changes nothing.
void CEditFrame::ReadLayout() {
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system) return;
    const auto read = [&](const char* name, int& pixels, int most) {
        const int kept = LeadingInt(system->ReadSetting(kLayoutPath, name).value_or(""));
        if (kept >= 20 && kept <= most / 2) pixels = kept;
    };
    read("menu", m_nScrnMenuWidth, GetClientRect().Width());
    read("prompt", m_nPromptHeight, GetClientRect().Height());
}

void CEditFrame::KeepLayout() {
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system) return;
    const CRect client = GetClientRect();
    const auto keep = [&](const char* name, const std::string& value) { system->WriteSetting(kLayoutPath, name, value); };
    keep("view", ViewOwner());
    keep("size", std::to_string(client.Width()).append(1, 'x').append(std::to_string(client.Height())));
    keep("menu", std::to_string(m_nScrnMenuWidth));
    keep("prompt", std::to_string(m_nPromptHeight));
}

// The last view is of use to the model that it showed alone, in a view of the same size: reckoned from what it follows
// from, since the view's own window goes before the frame's.
std::string CEditFrame::ViewOwner() {
    const CRect client = GetClientRect();
    std::string owner;
    for (const int pixels : {client.Width(), client.Height(), m_nScrnMenuWidth, m_nPromptHeight}) owner.append(std::to_string(pixels)).append(" ");
    return owner + m_document->Path();
}

// Whoever opens a model and is killed leaves a view that may show nothing of it.
std::string CEditFrame::TakeViewOwner() {
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system) return {};
    const std::string owner = system->ReadSetting(kLayoutPath, "view").value_or("");
    system->WriteSetting(kLayoutPath, "view", "");
    return owner;
}

// ---- the window -------------------------------------------------------------------------------------------

void CEditFrame::OnClose() {
    bool leave = false;
    Guarded([&] { leave = m_document->MayLeave(); });
    if (!leave) return;
    m_document->CloseJournal();
    CTvoFrameBase::OnClose();
}

void CEditFrame::OnDestroy() {
    if (GetDtView()) {
        KeepSnapSettings(View());
        KeepLayout();
    }
    m_recorder.reset();
    for (auto& [name, tool] : m_tools) tool->DestroyWindow();
    CTvoFrameBase::OnDestroy();
    if (CWindowSystem* system = CWindowSystem::Current()) {
        system->m_onIdle = nullptr;
        system->Quit();
    }
}

// Of several files the last model stays; drawings are added to it.
BOOL CEditFrame::OnDropFiles(const std::vector<std::string>& files) {
    Guarded([&] {
        for (const std::string& file : files) m_document->OpenAsked(file);
    });
    return 1;
}
