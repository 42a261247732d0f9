#include "host/editor/axis_grid_dialog.h"

#include <cmath>
#include <memory>

#include "host/editor/axis_grid.h"
#include "host/editor/axis_grid_view.h"
#include "host/host_data_base.h"
#include "model/profile.h"
#include "platform/window_system.h"
#include "view/dt_work_ex.h"
#include "view/tvo_view_mgr.h"

namespace {

/// Puts a grid where the user points.
class PlaceAxisGridCommand : public CDtWorkEx {
public:
    PlaceAxisGridCommand(CTvoHostDataBase& db, CTvoViewMgr& view, AxisGrid grid) : m_grid(std::move(grid)) {
        m_strName = m_grid.arc ? "ArcGrid" : "AxisGrid";
        m_pView = &view;
        m_pDataBase = &db;
        m_strPrompt = Prompt();
        m_nObjectHint = kAwaited;
    }

    void OnPrepare() override { SwitchRubberLine(new AxisGridRubber(m_grid), 0); }
    unsigned OnQueryState() override {
        SetPromptText(Prompt());
        return kAwaited;
    }
    unsigned OnGetObject(OBJECT_HINT hint, void* object, int byDefault) override {
        if (hint == OH_POINT) return TakePoint(*static_cast<const CFPoint*>(object));
        if (hint == OH_TEXT) return TakeText(static_cast<const char*>(object), byDefault != 0);
        return kAwaited;
    }

private:
    static constexpr unsigned kAwaited = unsigned{QS_POINT} | QS_TEXT;

    CString Prompt() const {
        return CString("请输入插入点, 或键入转角(度) <" + NumberText(m_grid.turn) + ">");
    }

    unsigned TakePoint(const CFPoint& p) {
        const std::optional<int> pieces = PlaceAxisGrid(static_cast<CTvoHostDataBase&>(*m_pDataBase), m_grid,
                                         {static_cast<double>(p.x), static_cast<double>(p.y)});
        if (!pieces) {
            AppendPromptText("*插入点太远*");
            return kAwaited;
        }
        AppendPromptText(CString("生成轴网: " + std::to_string(*pieces) + " 段轴线"));
        return QS_FINISH;
    }

    unsigned TakeText(const char* text, bool byDefault) {
        if (!*text) return byDefault ? unsigned{QS_CANCEL} : kAwaited;
        if (const std::string wrong = CheckNumber(text, "转角", -360, 360); !wrong.empty()) {
            AppendPromptText(CString("*" + wrong + "*"));
            return kAwaited;
        }
        // The view shows itself anew after each text: the grid in XOR is not left behind as it was.
        m_grid.turn = *TypedNumber(text);
        SetPromptText(Prompt());
        return kAwaited;
    }

    AxisGrid m_grid;
};

/// What a dialog is made of besides its values.
struct DialogWords {
    const char* name;  // of the form, and of its settings
    const char* title;
    const char* across;  // label of the bays
    const char* bays;    // proposed the first time
    const char* deep;
};
constexpr DialogWords kStraight{"orthogonal-axes", "正交轴网数据", "开间(mm)", "3600*5;6600*5;9000*2",
                                "6000;2400;6000"};
constexpr DialogWords kRound{"arc-axes", "圆弧轴网数据", "圆弧开间角(度)", "30*3", "6000*2"};

std::string Setting(const DialogWords& words, const std::string& name, const char* otherwise) {
    return CWindowSystem::Current()->ReadSetting(words.name, name).value_or(otherwise);
}

DialogForm Form(const DialogWords& words, bool arc) {
    using Kind = DialogField::Kind;
    const auto field = [&](Kind kind, const char* name, const char* label, const char* otherwise) {
        return DialogField{kind, name, label, Setting(words, name, otherwise), {}};
    };
    DialogForm form;
    form.m_name = words.name;
    form.m_title = words.title;
    form.m_fields.push_back(field(Kind::kText, "across", words.across, words.bays));
    if (arc) form.m_fields.push_back(field(Kind::kNumber, "inner", "内半径(mm)", "6000"));
    form.m_fields.push_back(field(Kind::kText, "deep", "进深(mm)", words.deep));
    form.m_fields.push_back(field(Kind::kNumber, "turn", "转角(度)", "0"));
    form.m_fields.push_back(field(Kind::kChoice, "insert", "插入点", "0"));
    form.m_fields.back().m_choices = InsertionNames(arc);
    // A setting that somebody has spoilt.
    const auto choice = TypedNumber(form.Value("insert"));
    if (!choice || *choice < 0 || *choice >= static_cast<double>(InsertionNames(arc).size()))
        form.SetValue("insert", "0");
    form.m_fields.push_back({Kind::kNote, "note", "", "开间和进深的数据格式: 3600*5;6600*5;9000*2 等", {}});
    form.m_fields.push_back({Kind::kNote, "total", "", "", {}});
    return form;
}

AxisGrid Read(const DialogForm& form, bool arc, std::string& wrong) {
    return ReadAxisGrid(arc,
                        {form.Value("across"), form.Value("deep"), form.Value("inner"), form.Value("turn"),
                         form.Value("insert")},
                        g_cTvoProfile.m_nNetTolerance, wrong);
}

std::string TotalNote(const AxisGrid& grid) {
    const auto rounded = [](double v) { return NumberText(std::round(v * 1000) / 1000); };
    const auto bays = [](const Spacings& spacings) { return std::to_string(spacings.All().size()) + " 跨"; };
    return "合计: " + bays(grid.across) + " " + rounded(grid.across.Total()) +
           (grid.arc ? " 度, " : " mm, ") + bays(grid.deep) + " " + rounded(grid.deep.Total()) + " mm";
}

}  // namespace

void AskAxisGrid(CTvoHostDataBase& db, CTvoViewMgr& view, bool arc) {
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system) return;
    const DialogWords& words = arc ? kRound : kStraight;
    DialogForm form = Form(words, arc);
    AxisGridView preview;
    form.m_preview = &preview;
    form.m_check = [&](DialogForm& asked) {
        std::string wrong;
        const AxisGrid grid = Read(asked, arc, wrong);
        preview.m_valid = wrong.empty();
        if (preview.m_valid) preview.m_grid = grid;
        preview.Invalidate();
        asked.SetValue("total", wrong.empty() ? TotalNote(grid) : "");
        return wrong;
    };
    if (system->RunDialog(form) < 0) return;
    std::string wrong;
    AxisGrid grid = Read(form, arc, wrong);
    if (!wrong.empty()) return;  // a system that lets one press OK all the same
    for (const char* name : {"across", "inner", "deep", "turn", "insert"})
        if (arc || std::string_view(name) != "inner")
            system->WriteSetting(words.name, name, form.Value(name));
    view.DoWork(new PlaceAxisGridCommand(db, view, std::move(grid)));
}
