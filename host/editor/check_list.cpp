#include "host/editor/check_list.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "host/editor/edit_frame.h"
#include "host/editor/tool_table.h"
#include "host/net_check.h"
#include "model/profile.h"
#include "platform/number_text.h"
#include "view/tvo_view_mgr.h"

namespace {

constexpr const char* kKinds[kFaultKindCount] = {"悬挂端", "缺口", "点未接线", "短线", "重复"};
constexpr int kWidth = 460, kLeastHeight = 130, kMostHeight = 420, kRowHeight = 20;  // pixels

/// Shows the surroundings of a place with the place marked.
void GoTo(CEditFrame& frame, const NetFault& fault) {
    CTvoViewMgr& view = frame.View();
    const double tolerance = std::max(1, g_cTvoProfile.m_nNetTolerance);
    const double x = (fault.x + fault.x2) / 2, y = (fault.y + fault.y2) / 2;
    const double mark = std::max(fault.kind == kFaultDangling ? 0.0 : fault.distance, 4 * tolerance);
    const double around = 10 * mark;
    const auto corner = [&](double sign) {
        return CFPoint(static_cast<float>(x + sign * around), static_cast<float>(y + sign * around), 0);
    };
    view._Fun_ShowRect(corner(-1), corner(1), 1, 0);
    view._Svr_ShowHighLight(static_cast<float>(x), static_cast<float>(y), static_cast<float>(mark));
    view.Invalidate();
}

}  // namespace

void ShowCheckList(CEditFrame& frame) {
    const std::vector<NetFault> faults = CheckNet(frame.DataBase(), g_cTvoProfile.m_nNetTolerance);
    frame.CloseTool("check");
    if (faults.empty()) return frame.Tell("检查: 没有发现问题");
    std::size_t counts[kFaultKindCount] = {};
    std::vector<std::vector<std::string>> rows;
    for (const NetFault& fault : faults) {
        ++counts[fault.kind];
        rows.push_back({kKinds[fault.kind], FixedReal(fault.x, 1), FixedReal(fault.y, 1),
                        fault.kind == kFaultDangling ? std::string() : FixedReal(fault.distance, 1)});
    }
    std::string found;
    for (int kind = 0; kind < kFaultKindCount; ++kind)
        if (counts[kind])
            found +=
                (found.empty() ? "" : ", ") + std::string(kKinds[kind]) + " " + std::to_string(counts[kind]);
    frame.Tell("检查: " + found + "。点击一行到该处, Ctrl+C 复制。");
    auto list = std::make_unique<ToolTable>();
    list->Column("问题", 100);
    for (const char* head : {"X", "Y", "距离"}) list->Column(head, 110, true);
    list->Fill(rows);
    list->m_onSelect = [&frame, faults](int row) { GoTo(frame, faults[static_cast<std::size_t>(row)]); };
    const CRect client = frame.GetClientRect();
    const int left = std::max(0, client.right - kWidth - 140), top = 60;
    const int fitting = static_cast<int>(std::min<std::size_t>(faults.size() + 2, 100)) * kRowHeight;
    const int height = std::clamp(fitting, kLeastHeight, kMostHeight);
    frame.ShowTool("check", std::move(list), {left, top, left + kWidth, top + height}, "检查: " + found);
}
