// The editor's commands about plates.
#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "host/editor/edit_frame.h"
#include "host/editor/editor_command.h"
#include "host/editor/plate_pick.h"
#include "host/net_walk.h"
#include "host/plate_look.h"
#include "net/gj_net_line.h"
#include "plates/mian_goujian.h"

namespace {

std::string Count(std::size_t count) { return std::to_string(count); }

void FormPlates(CEditFrame& frame) {
    CTvoHostDataBase& db = frame.DataBase();
    db.Start();
    db.FormPlates();
    db.SortBianHao(db.QueryMainGouJianType());
    const std::size_t plates = NetPlates(db).size(), dangling = DanglingLines(db).size();
    frame.Tell("形成 " + Count(plates) + " 块板, 共 " + AreaText(PlateArea(db)) +
               (dangling ? "; " + Count(dangling) + " 条轴线不围成板, 用“检查”查看" : ""));
    frame.ModelChanged();
}

// The next edit at one of its lines forms it again.
void DeletePlates(CTvoHostDataBase& db, const std::vector<CMianGouJian*>& plates, CDtWorkEx& command) {
    db.Start();
    for (CMianGouJian* plate : plates) {
        db.DeleteGouJianDependentOnMianGouJian(plate);
        db.DeleteGouJian(plate);
    }
    command.AppendPromptText(CString("已删除 " + Count(plates.size()) + " 块板"));
}

/// The lines that have picked plates alone on either side.
std::vector<CGjNetLine*> LinesBetween(CTvoHostDataBase& db, const std::vector<CMianGouJian*>& plates) {
    const std::set<const CMianGouJian*> picked(plates.begin(), plates.end());  // only looked up
    std::vector<CGjNetLine*> between;
    for (const CMianGouJian* plate : plates)
        for (CGjNetLine* line : plate->m_arrBoundery) {
            CArray<CMianGouJian*> beside;
            db.GetBounderyPlate(line, beside);
            const auto count = std::count_if(beside.begin(), beside.end(),
                                             [&](const CMianGouJian* p) { return picked.contains(p); });
            const bool inner = count == 2;
            if (inner && std::find(between.begin(), between.end(), line) == between.end())
                between.push_back(line);
        }
    return between;
}

// Plates are the cells of the net: two become one when the lines between them go.
void MergePlates(CTvoHostDataBase& db, const std::vector<CMianGouJian*>& plates, CDtWorkEx& command) {
    CArray<CGouJianEx*> lines;
    for (CGjNetLine* line : LinesBetween(db, plates)) lines.Add(line);
    if (lines.IsEmpty()) return command.AppendPromptText("所选的板没有公共边");
    const auto count = static_cast<std::size_t>(lines.GetSize());
    db.Start();
    db.DoEdit([&] { db.DeleteNetLine(lines); });
    command.AppendPromptText(
        CString("删去公共边 " + Count(count) + " 条, 现有板 " + Count(NetPlates(db).size()) + " 块"));
}

/// Picking needs plates.
void Pick(CEditFrame& frame, const char* name, const char* prompt, PlatePickCommand::EndFunction end) {
    if (NetPlates(frame.DataBase()).empty()) return frame.Tell("还没有板, 先用“形成板”");
    frame.Start(new PlatePickCommand(name, prompt, end));
}

constexpr EditorCommand kCommands[] = {
    {0x40001, "板", "形成板", "FormPlates", "由全部轴线形成板", FormPlates},
    {0x40002, "板", "删除板", "ErasePlates", "点取要删除的板",
     [](CEditFrame& frame) { Pick(frame, "ErasePlates", "请点取要删除的板, 右键结束", DeletePlates); }},
    {0x40003, "板", "合并板", "MergePlates", "删去所选板之间的轴线",
     [](CEditFrame& frame) { Pick(frame, "MergePlates", "请点取要合并的相邻板, 右键结束", MergePlates); }},
};

}  // namespace

std::span<const EditorCommand> PlateEditorCommands() { return kCommands; }
