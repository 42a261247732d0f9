// The frame of a session without a screen.
#pragma once
#include "host/edit_commands.h"
#include "host/host_data_base.h"
#include "shell/tvo_frame_base.h"
#include "view/tvo_view_mgr.h"

/// Runs tvo's own commands besides the library's.
class CPlayFrame : public CTvoFrameBase {
public:
    explicit CPlayFrame(CTvoHostDataBase& db) : m_db(db) {}

    // No bars: nobody sees them.
    void CreateToolBar() override {}
    void CreateStatusBar() override {}

    void InvokeCommand(int id, int arg) override {
        CTvoFrameBase::InvokeCommand(id, arg);
        if (CDtWorkEx* command = MakeEditCommand(id, m_db, *GetDtView())) GetDtView()->DoWork(command);
    }

    /// Where the frame stands so that its view, with no menu beside it, has this size.
    static CRect PlaceFor(int width, int height) { return {0, 0, width, height + kBelowView}; }

private:
    static constexpr int kBelowView = 165;  // prompt, and the bar above it
    CTvoHostDataBase& m_db;                 // borrowed
};
