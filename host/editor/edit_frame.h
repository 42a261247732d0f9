// CEditFrame: the editor's window.
#pragma once
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/host_data_base.h"
#include "shell/tvo_frame_base.h"

class CDtWorkEx;
class EditorDocument;
class SessionRecorder;

/// A frame that runs tvo's commands on one model. It knows no toolkit: `tvo edit` shows it on a screen, `tvo play` drives
/// it without one.
class CEditFrame : public CTvoFrameBase {
public:
    explicit CEditFrame(CTvoHostDataBase& db);
    ~CEditFrame() override;

    /// The group of the window's layout in the settings: "size" (WxH of the window), "menu", "prompt" (pixels),
    /// "view" (those four and the model that the last view belongs to).
    static constexpr const char* kLayoutPath = "layout";

    /// Makes the window with its panes at a place on the screen and opens a file; without one it shows a sample net.
    void Open(const CRect& place, const std::string& file = {});

    void InvokeCommand(int id, int arg) override;
    CTvoViewMgr* GetGraphicView() override;
    void SetSnapOption() override;  // asks for switches, what is snapped to and the symbol's size

    CTvoHostDataBase& DataBase() { return m_db; }
    CTvoViewMgr& View() { return *GetDtView(); }
    EditorDocument& Document() { return *m_document; }
    void Tell(const std::string& text);  // a line of the prompt's history
    void Warn(const std::string& text);  // a box that waits for the user, and a line of the history
    void Start(CDtWorkEx* command);      // the view runs it and owns it
    /// The model was changed by something else than a command at the view: lists, title and picture follow.
    void ModelChanged();
    /// Another model stands in the data base: nothing of the former may be shown or running any more. Shows all of it.
    void ModelReplaced();
    void ShowWhole();
    /// To be called before another model takes the place of this one.
    void LeaveModel();

    // --- recordings
    /// Writes the session down, in the place of another recording: from its start, or from now on as far as that can't be
    /// told any more. Throws DataFailure when the file can't be written.
    void StartRecording(const std::string& path, bool fromStart);
    SessionRecorder* Recorder() const { return m_recorder.get(); }  // null before Open and after the end
    void WillRead(const std::string& path);  // for the recorder: the file is about to be looked at

    // --- windows beside the frame, by the names by which scripts know them
    /// Shows a tool window in the place of the one of that name. The frame owns it.
    void ShowTool(const std::string& name, std::unique_ptr<CWnd> tool, const CRect& place, const std::string& title);
    CWnd* Tool(const std::string& name) const;  // null when there is none, or it has been closed
    void CloseTool(const std::string& name);
    std::vector<std::string> ToolNames() const;  // of those that stand
    /// menu, bar, tools or a tool window's; null when there is no such window.
    CWnd* WindowNamed(const std::string& name) const;
    /// The other way round; empty for a window that has no such name.
    std::string NameOf(const CWnd& window) const;

protected:
    void OnClose() override;
    void OnDestroy() override;
    /// Keys that the empty command line has no use for.
    void OnKeyDown(UINT key, LPARAM flags) override;
    BOOL OnDropFiles(const std::vector<std::string>& files) override;

private:
    void OnIdle();
    void Guarded(const std::function<void()>& work);
    void ReadLayout();  // sizes of the panes, as the last session left them
    void KeepLayout();
    std::string ViewOwner();      // what the last view belongs to
    std::string TakeViewOwner();  // as kept; it is forgotten, until the window closes
    std::vector<std::pair<std::string, CWnd*>> OwnWindows() const;

    CTvoHostDataBase& m_db;  // borrowed
    std::unique_ptr<EditorDocument> m_document;
    std::unique_ptr<SessionRecorder> m_recorder;  // looks on from Open to the window's end
    std::map<std::string, std::unique_ptr<CWnd>> m_tools;
    std::string m_title;  // as it stands on the window
};
