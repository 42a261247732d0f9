#include "host/editor/setting_dialogs.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "fields/backgrnd.h"
#include "host/editor/spacing_text.h"
#include "model/goujian_type.h"
#include "model/profile.h"
#include "model/tvo_data_base.h"
#include "platform/canvas/dc.h"
#include "platform/window_system.h"
#include "view/tvo_view_mgr.h"

namespace {

using Kind = DialogField::Kind;

constexpr int kAngles = 10;
constexpr double kFullTurn = 360;
constexpr int kLeastSymbol = 5, kLargestSymbol = 65;  // pixels
constexpr double kMetre = 1000;                       // mm
constexpr double kWidestGrid = 1000;                  // m, a spacing
constexpr int kMostGridSpacings = CBackgrnd::kMaxPositions - 1;

// ---- angles -----------------------------------------------------------------------------------------------

std::string AngleName(int i) { return "angle" + std::to_string(i + 1); }

// The dots are the label's own: nothing is cut off.
std::string AngleLabel(int i) {
    const std::string number = std::to_string(i + 1);
    return "第" + std::string(number.size() == 1 ? " " : "") + number + "角度" + (i == 0 ? "(度)" : "....");
}

// ---- switches ---------------------------------------------------------------------------------------------

/// A switch of the view, and the service that turns it: that tells the status bar, and the picture follows.
struct Switch {
    const char* name;
    const char* label;
    int CTvoViewMgr::*value;
    void (CTvoViewMgr::*turn)();
};
const Switch kSwitches[] = {
    {"coordinates", "坐标显示", &CTvoViewMgr::m_bShowCoordinate, &CTvoViewMgr::_Svr_SwitchCoordDisplay},
    {"grid", "网格显示", &CTvoViewMgr::m_bShowGrid, &CTvoViewMgr::_Svr_SwitchGridDisplay},
    {"ortho", "正交模式", &CTvoViewMgr::m_bOrtho, &CTvoViewMgr::_Svr_SwitchOrthoSnap},
    {"grid-snap", "网格捕捉", &CTvoViewMgr::m_bGridSnap, &CTvoViewMgr::_Svr_SwitchGridSnap},
    {"object-snap", "对象捕捉", &CTvoViewMgr::m_bObjectSnap, &CTvoViewMgr::_Svr_SwitchObjectSnap},
    {"angle-snap", "角度捕捉", &CTvoViewMgr::m_bAngleSnap, &CTvoViewMgr::_Svr_SwitchAngleSnap},
};

void Turn(CTvoViewMgr& view, const Switch& which, bool on) {
    if ((view.*which.value != 0) != on) (view.*which.turn)();
}

/// The kinds of components whose points a drawing snaps to, as the table of snap switches knows them.
struct SnapType {
    int type;
    const char* label;
};
constexpr SnapType kTypes[] = {{GJLX_NET_NODE, "节点"}, {GJLX_NET_LINE, "轴线"}, {GJLX_MIAN, "板"},
                               {GJLX_TEXT, "文字"},     {GJLX_POINT, "点"},      {GJLX_LINE, "线"},
                               {GJLX_ARC, "弧"},        {GJLX_CIRCLE, "圆"}};

std::string TypeTicks() {
    std::string ticks;
    for (const SnapType& type : kTypes) ticks += IsSnapEnabled(type.type) ? '1' : '0';
    return ticks;
}

bool AreTicks(const std::string& ticks) {
    return ticks.size() == std::size(kTypes) && ticks.find_first_not_of("01") == ticks.npos;
}

void SetTypes(const std::string& ticks) {
    for (std::size_t i = 0; i < std::size(kTypes); ++i)
        if (ticks[i] == '1') EnableSnap(kTypes[i].type);
        else DisableSnap(kTypes[i].type);
}

/// The three snap symbols in their size, as they stand in the view.
class SymbolView : public CView {
public:
    ~SymbolView() override { DestroyWindow(); }
    void OnDraw(CDC* dc) override {
        const CRect client = GetClientRect();
        dc->FillSolidRect(client, COLORREF{g_cTvoProfile.m_crBackground});
        CPen pen(PS_SOLID, 2, COLORREF{g_cTvoProfile.m_crSnap});
        CPen* const oldPen = dc->SelectObject(&pen);
        CGdiObject* const oldBrush = dc->SelectStockObject(NULL_BRUSH);
        const int h = m_size / 2, y = client.Height() / 2, step = client.Width() / 4;
        dc->Rectangle(step - h + 2, y - h + 2, step + h, y + h);
        dc->Ellipse(2 * step - h + 2, y - h + 2, 2 * step + h, y + h);
        const CPoint triangle[] = {
            {3 * step - h, y + h}, {3 * step + h, y + h}, {3 * step, y - h}, {3 * step - h, y + h}};
        dc->Polyline(triangle, 4);
        dc->SelectObject(oldBrush);
        dc->SelectObject(oldPen);
    }
    int m_size = 0;  // pixels
};

std::string CheckSymbol(const std::string& text, int least = kLeastSymbol, int most = kLargestSymbol) {
    return CheckNumber(text, "靶标大小", least, most);
}

// ---- steps ------------------------------------------------------------------------------------------------

std::string CheckStep(const std::string& metres) {
    return CheckNumber(metres, "键盘步长", static_cast<double>(g_cTvoProfile.m_fKbdStepMin) / kMetre,
                       static_cast<double>(g_cTvoProfile.m_fKbdStepMax) / kMetre);
}

struct GridAxis {
    const char* name;
    const char* label;
    const char* what;  // in messages
    CString CBackgrnd::*text;
};
const GridAxis kAxes[] = {
    {"grid-x", "背景网格X(米*间距)", "背景网格X", &CBackgrnd::m_strKuaX},
    {"grid-y", "背景网格Y(米*间距)", "背景网格Y", &CBackgrnd::m_strKuaY},
    {"grid-z", "背景网格Z(米*间距)", "背景网格Z", &CBackgrnd::m_strKuaZ},
};

Spacings ReadGrid(const GridAxis& axis, const std::string& text) {
    return ReadSpacings(text, {axis.what, 0.001, kWidestGrid, kMostGridSpacings, 0});
}

}  // namespace

void AskSnapAngles(CTvoViewMgr& view) {
    DialogForm form;
    form.m_name = "snap-angles";
    form.m_title = "捕捉角度设置(度)";
    for (int i = 0; i < kAngles; ++i)
        form.m_fields.push_back({Kind::kNumber,
                                 AngleName(i),
                                 AngleLabel(i),
                                 NumberText(view.m_fSnapAngle[i]),
                                 {}});
    form.m_check = [](DialogForm& asked) {
        for (int i = 0; i < kAngles; ++i) {
            const std::string label = "第" + std::to_string(i + 1) + "角度";
            if (std::string wrong =
                    CheckNumber(asked.Value(AngleName(i)), label.c_str(), -kFullTurn, kFullTurn);
                !wrong.empty())
                return wrong;
        }
        return std::string();
    };
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system || system->RunDialog(form) < 0 || !form.m_check(form).empty()) return;
    for (int i = 0; i < kAngles; ++i)
        view.m_fSnapAngle[i] = static_cast<float>(*TypedNumber(form.Value(AngleName(i))));
    KeepSnapSettings(view);
}

void AskSnapSwitches(CTvoViewMgr& view) {
    // A profile may hold a size beyond: it must not change by the dialog's being shown.
    const int size = g_cTvoProfile.m_nSymbolSize;
    const int least = std::min(size, kLeastSymbol), most = std::max(size, kLargestSymbol);
    DialogForm form;
    form.m_name = "snap";
    form.m_title = "捕捉总信息";
    form.m_fields.push_back({Kind::kFrame, "switches", "开关设置", "", {}});
    for (const Switch& which : kSwitches)
        form.m_fields.push_back({Kind::kCheck, which.name, which.label, view.*which.value ? "1" : "0", {}});
    form.m_fields.push_back({Kind::kFrame, "snapped", "对象捕捉类型", "", {}});
    form.m_fields.push_back({Kind::kTicks, "types", "", TypeTicks(), {}});
    for (const SnapType& type : kTypes) form.m_fields.back().m_choices.push_back(type.label);
    form.m_fields.push_back({Kind::kFrame, "symbol", "靶标设置", "", {}});
    form.m_fields.push_back({Kind::kPreview, "preview", "", "", {}});
    form.m_fields.push_back({Kind::kSlider, "size", "靶标大小(像素)", std::to_string(size), {}, least, most});
    SymbolView preview;
    form.m_preview = &preview;
    form.m_previewWidth = 280;
    form.m_previewHeight = 84;
    form.m_check = [&](DialogForm& asked) {
        if (!AreTicks(asked.Value("types")))
            return std::string("对象捕捉类型: 应为 ") + std::to_string(std::size(kTypes)) + " 个 0 或 1";
        std::string wrong = CheckSymbol(asked.Value("size"), least, most);
        preview.m_size = wrong.empty() ? static_cast<int>(*TypedNumber(asked.Value("size"))) : 0;
        preview.Invalidate();
        return wrong;
    };
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system || system->RunDialog(form) < 0 || !form.m_check(form).empty()) return;
    for (const Switch& which : kSwitches) Turn(view, which, form.Value(which.name) == "1");
    SetTypes(form.Value("types"));
    // A symbol on the screen must go in the size that it has: the repaint wipes it.
    g_cTvoProfile.m_nSymbolSize = static_cast<int>(*TypedNumber(form.Value("size")));
    KeepSnapSettings(view);
    view.Invalidate();
}

void AskSteps(CTvoDataBase& db, CTvoViewMgr& view) {
    CBackgrnd& grid = db.GetBackgrnd();
    DialogForm form;
    form.m_name = "steps";
    form.m_title = "步长设置";
    form.m_fields.push_back({Kind::kNumber,
                             "step",
                             "键盘步长(米)",
                             NumberText(static_cast<float>(static_cast<double>(view.m_fKbdStep) / kMetre)),
                             {}});
    form.m_fields.push_back({Kind::kFrame, "grid", "背景设置(格式:间距*跨数)", "", {}});
    for (const GridAxis& axis : kAxes)
        form.m_fields.push_back({Kind::kText, axis.name, axis.label, (grid.*axis.text).GetString(), {}});
    form.m_check = [](DialogForm& asked) {
        if (std::string wrong = CheckStep(asked.Value("step")); !wrong.empty()) return wrong;
        for (const GridAxis& axis : kAxes)
            if (const Spacings read = ReadGrid(axis, asked.Value(axis.name)); !read.wrong.empty())
                return read.wrong;
        return std::string();
    };
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system || system->RunDialog(form) < 0 || !form.m_check(form).empty()) return;
    view.m_fKbdStep = static_cast<float>(*TypedNumber(form.Value("step")) * kMetre);
    KeepSnapSettings(view);
    for (const GridAxis& axis : kAxes) {
        const std::string text = ReadGrid(axis, form.Value(axis.name)).Text();
        grid.*axis.text = CString(text.empty() ? "0*0" : text);
    }
    view.m_bBaseMapDirty = 1;
    view.Invalidate();
}

std::vector<std::pair<std::string, std::string>> SnapSettings(const CTvoViewMgr& view) {
    std::vector<std::pair<std::string, std::string>> settings;
    for (int i = 0; i < kAngles; ++i)
        settings.emplace_back(AngleName(i), NumberText(view.m_fSnapAngle[i]));
    for (const Switch& which : kSwitches) settings.emplace_back(which.name, view.*which.value ? "1" : "0");
    settings.emplace_back("types", TypeTicks());
    settings.emplace_back("size", std::to_string(g_cTvoProfile.m_nSymbolSize));
    settings.emplace_back("step", NumberText(static_cast<float>(static_cast<double>(view.m_fKbdStep) / kMetre)));
    return settings;
}

void KeepSnapSettings(const CTvoViewMgr& view) {
    if (CWindowSystem* system = CWindowSystem::Current())
        for (const auto& [name, value] : SnapSettings(view))
            system->WriteSetting(kSnapSettingsPath, name, value);
}

void ReadSnapSettings(CTvoViewMgr& view) {
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system) return;
    const auto kept = [&](const std::string& name) {
        return system->ReadSetting(kSnapSettingsPath, name).value_or("");
    };
    for (int i = 0; i < kAngles; ++i)
        if (const std::string angle = kept(AngleName(i));
            CheckNumber(angle, "", -kFullTurn, kFullTurn).empty())
            view.m_fSnapAngle[i] = static_cast<float>(*TypedNumber(angle));
    for (const Switch& which : kSwitches)
        if (const std::string on = kept(which.name); on == "0" || on == "1") Turn(view, which, on == "1");
    if (const std::string types = kept("types"); AreTicks(types)) SetTypes(types);
    if (const std::string size = kept("size"); CheckSymbol(size).empty())
        g_cTvoProfile.m_nSymbolSize = static_cast<int>(*TypedNumber(size));
    if (const std::string step = kept("step"); CheckStep(step).empty())
        view.m_fKbdStep = static_cast<float>(*TypedNumber(step) * kMetre);
}
