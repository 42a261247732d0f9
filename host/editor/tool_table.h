// ToolTable: a table to look at, in a window beside the frame.
#pragma once
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "controls/easy_table_wnd.h"

/// Its texts are copied, not changed; ESC closes it. The last column takes the room that is left.
class ToolTable : public CEasyTableWnd {
public:
    ToolTable() { m_bSelectRows = true; }
    ~ToolTable() override { DestroyWindow(); }

    void Column(const std::string& head, int width, bool right = false) {
        AddColumn(CString(head), width, false, right);
    }
    void Fill(const std::vector<std::vector<std::string>>& rows) {
        std::vector<Row> texts;
        for (const auto& row : rows) texts.emplace_back(row.begin(), row.end());
        SetRows(std::move(texts));
        Stretch();
    }

protected:
    void OnSize(int width, int height) override {
        CEasyTableWnd::OnSize(width, height);
        Stretch();
    }
    void OnKeyDown(UINT key, LPARAM flags) override {
        if (key == VK_ESCAPE) return OnClose();
        CEasyTableWnd::OnKeyDown(key, flags);
    }

private:
    void Stretch() {
        int room = GetCellsWidth();
        const auto& columns = GetColumns();
        if (columns.empty() || room <= 0) return;
        for (std::size_t i = 0; i + 1 < columns.size(); ++i) room -= columns[i].m_nWidth;
        SetColumnWidth(static_cast<int>(columns.size()) - 1, std::max(room, 60));
    }
};
