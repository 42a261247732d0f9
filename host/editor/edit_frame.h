// CEditFrame: the editor's window.
#pragma once
#include <string>

#include "host/host_data_base.h"
#include "shell/tvo_frame_base.h"

class CDtWorkEx;

/// A frame that runs tvo's commands on one model. It knows no toolkit: `tvo edit` shows it on a screen, `tvo play` drives
/// it without one.
class CEditFrame : public CTvoFrameBase {
public:
    explicit CEditFrame(CTvoHostDataBase& db);
    ~CEditFrame() override;

    void InvokeCommand(int id, int arg) override;

    CTvoHostDataBase& DataBase() { return m_db; }
    CTvoViewMgr& View() { return *GetDtView(); }
    void Tell(const std::string& text);  // a line of the prompt's history
    void Start(CDtWorkEx* command);      // the view runs it and owns it
    /// The model was changed by something else than a command at the view: lists, title and picture follow.
    void ModelChanged();

private:
    CTvoHostDataBase& m_db;  // borrowed
};
