#include "host/editor/field_actions.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "fields/chang.h"
#include "fields/field_mesh.h"
#include "fields/gj_chang.h"
#include "host/editor/reason_text.h"
#include "host/editor/spacing_text.h"
#include "host/failure.h"
#include "host/field_edit.h"
#include "host/field_look.h"
#include "host/fields/field_file.h"
#include "host/host_data_base.h"
#include "platform/saturate.h"
#include "platform/window_system.h"
#include "shell/tvo_frame_base.h"
#include "view/dt_work_ex.h"
#include "view/tvo_view_mgr.h"

namespace {

using Kind = DialogField::Kind;

constexpr const char* kNoField = "*没有显示的场, 请先打开场*";
constexpr double kLargestScale = 1e30;

void Tell(CTvoViewMgr& view, const std::string& text) {
    if (view.m_pFrame) view.m_pFrame->AppendPromptText(CString(text));
}

/// A value in six digits that count: fields come in all sizes.
std::string ValueText(double value) {
    char text[40];
    const auto [end, error] =
        std::to_chars(text, text + sizeof text, value == 0 ? 0.0 : value, std::chars_format::general, 6);
    return error == std::errc() ? std::string(text, end) : std::string();
}

std::string FieldTitle(const CGjChang& field) {
    return "场 " + std::to_string(field.get_m_dwGouJianNO()) + " (" +
           std::to_string(field.m_pChang->m_arrNode.GetSize()) + " 节点, " +
           std::to_string(field.m_pChang->m_arrTri.GetSize()) + " 三角形)";
}

/// How many of the ten values anything is in: a field does not know how many its file gave.
int ValuesInUse(const CChang& field) {
    int used = 1;
    for (const CChangNode& node : field.m_arrNode)
        for (int k = CChang::kValues; k > used; --k)
            if (node.m_aValue[k - 1] != 0 && std::isfinite(node.m_aValue[k - 1])) used = k;
    return std::max(used, field.m_nValue + 1);
}

std::vector<std::string> ValueNames(int values) {
    std::vector<std::string> names;
    for (int k = 1; k <= values; ++k) names.push_back("第" + std::to_string(k) + "个值");
    return names;
}

void ShowAnew(CTvoViewMgr& view, CGjChang* field) { field->DisplayChang(&view, field->m_nDisplay); }

void HideOthers(CTvoHostDataBase& db, const CGjChang* shown) {
    for (CGjChang* field : AllFields(db))
        if (field != shown) field->set_m_byteStatus(GJ_STATUS_HIDDEN);
}

std::string RangeNote(CChang& field, int value, double scale) {
    const int before = std::exchange(field.m_nValue, value);
    float low, high;
    const bool any = field.GetMinMaxZ(low, high) != 0;
    field.m_nValue = before;
    if (!any) return "没有数值";
    const double from = static_cast<double>(low) * scale, to = static_cast<double>(high) * scale;
    return "范围: " + ValueText(std::min(from, to)) + " 到 " + ValueText(std::max(from, to)) +
           ", 分 20 级, 每级 " + ValueText(std::fabs(to - from) / 20);
}

/// Which of the values of a file: 0 and up, -1 for none.
int AskValue(int values) {
    DialogForm form;
    form.m_name = "field-value";
    form.m_title = "打开场";
    form.m_fields = {{Kind::kChoice, "value", "显示哪个值", "0", ValueNames(values)}};
    if (CWindowSystem::Current()->RunDialog(form) < 0) return -1;
    const auto value = TypedNumber(form.Value("value"));
    return value && *value >= 0 && *value < values ? static_cast<int>(*value) : -1;
}

// ---- 场设置 -----------------------------------------------------------------------------------------------

/// The dialog of how a field looks, for one of the fields at a time.
class LookDialog {
public:
    LookDialog(CTvoHostDataBase& db, std::vector<CGjChang*> fields, CGjChang* first)
        : m_db(db), m_fields(std::move(fields)) {
        m_form.m_name = "field-look";
        m_form.m_title = "场设置";
        std::vector<std::string> titles;
        int most = 1;  // values of any of them
        for (const CGjChang* field : m_fields) {
            titles.push_back(FieldTitle(*field));
            m_values.push_back(ValuesInUse(*field->m_pChang));
            most = std::max(most, m_values.back());
        }
        const auto at = std::find(m_fields.begin(), m_fields.end(), first) - m_fields.begin();
        m_form.m_fields = {
            {Kind::kChoice, "field", "场", std::to_string(at), titles},
            {Kind::kChoice, "value", "显示哪个值", "0", ValueNames(most)},
            {Kind::kChoice, "display", "图形", "0", {"云图", "等值线", "数字"}},
            {Kind::kChoice,
             "scheme",
             "色标",
             "0",
             {"蓝-青-绿-黄-红", "红-黄-绿-青-蓝", "灰度", "蓝-白-红", "等亮度"}},
            {Kind::kNumber, "scale", "数值乘以", "1", {}},
            {Kind::kCheck, "mesh", "显示网格", "0", {}},
            {Kind::kCheck, "numbers", "显示节点数值", "0", {}},
            {Kind::kCheck, "coordinates", "数值下显示坐标", "0", {}},
            {Kind::kCheck, "alone", "只显示此场", "1", {}},
            {Kind::kNote, "range", "", "", {}},
        };
        m_form.m_check = [this](DialogForm&) { return Check(); };
    }

    /// The field that was asked for, looking so; null for a cancel.
    CGjChang* Ask() {
        if (CWindowSystem::Current()->RunDialog(m_form) < 0 || !Check().empty()) return nullptr;
        CGjChang* const field = m_fields[static_cast<std::size_t>(Choice("field"))];
        field->m_pChang->m_nValue = Choice("value");
        field->m_nDisplay = static_cast<FIELD_DISPLAY>(Choice("display"));
        field->m_nColorScheme = Choice("scheme") + 1;
        field->m_fValueScale = static_cast<float>(*TypedNumber(m_form.Value("scale")));
        field->m_bDrawGrid = On("mesh");
        field->m_bDrawValue = On("numbers");
        field->m_bShowCoord = On("coordinates");
        field->set_m_byteStatus(GJ_STATUS_NORMAL);
        if (On("alone")) HideOthers(m_db, field);
        return field;
    }

private:
    int On(const char* name) const { return m_form.Value(name) == "1" ? 1 : 0; }
    int Choice(const char* name) const {
        return SaturatedInt(TypedNumber(m_form.Value(name)).value_or(-1));
    }
    bool Among(const char* name, std::size_t count) const {
        return Choice(name) >= 0 && Choice(name) < static_cast<int>(count);
    }

    /// Another field was chosen: its own look is what is proposed.
    void Propose(const CGjChang& field) {
        const auto set = [&](const char* name, const std::string& value) { m_form.SetValue(name, value); };
        set("value", std::to_string(std::clamp(field.m_pChang->m_nValue, 0, CChang::kValues - 1)));
        set("display", std::to_string(std::clamp<int>(field.m_nDisplay, 0, 2)));
        set("scheme", std::to_string(std::clamp(field.m_nColorScheme, 1, 5) - 1));
        set("scale", NumberText(field.m_fValueScale));
        set("mesh", field.m_bDrawGrid ? "1" : "0");
        set("numbers", field.m_bDrawValue ? "1" : "0");
        set("coordinates", field.m_bShowCoord ? "1" : "0");
    }

    std::string Check() {
        m_form.SetValue("range", "");
        if (!Among("field", m_fields.size())) return "没有这个场";
        const int chosen = Choice("field");
        CGjChang& field = *m_fields[static_cast<std::size_t>(chosen)];
        if (std::exchange(m_proposed, chosen) != chosen) Propose(field);
        if (!Among("value", static_cast<std::size_t>(m_values[static_cast<std::size_t>(chosen)])))
            return "没有这个值";
        if (!Among("display", 3)) return "没有这种图形";
        if (!Among("scheme", 5)) return "没有这种色标";
        if (std::string wrong = CheckNumber(m_form.Value("scale"), "数值乘以", -kLargestScale, kLargestScale);
            !wrong.empty())
            return wrong;
        m_form.SetValue("range",
                        RangeNote(*field.m_pChang, Choice("value"), *TypedNumber(m_form.Value("scale"))));
        return {};
    }

    CTvoHostDataBase& m_db;           // borrowed
    std::vector<CGjChang*> m_fields;  // borrowed
    std::vector<int> m_values;        // how many each has
    DialogForm m_form;
    int m_proposed = -1;  // whose look stands in the form
};

// ---- 数值 -------------------------------------------------------------------------------------------------

/// Tells the value at points.
class FieldValueCommand : public CDtWorkEx {
public:
    FieldValueCommand(CTvoHostDataBase& db, CTvoViewMgr& view) {
        m_strName = "FieldValue";
        m_strPrompt = "请选择点, 右键结束";
        m_pView = &view;
        m_pDataBase = &db;
        m_nObjectHint = kAwaited;
    }
    unsigned OnQueryState() override {
        SetPromptText(m_strPrompt);
        return kAwaited;
    }
    unsigned OnGetObject(OBJECT_HINT hint, void* object, int byDefault) override {
        if (hint == OH_TEXT) return byDefault ? unsigned{QS_FINISH} : kAwaited;
        if (hint == OH_POINT) TellValue(*static_cast<const CFPoint*>(object));
        return kAwaited;
    }

private:
    static constexpr unsigned kAwaited = unsigned{QS_POINT} | QS_TEXT;

    // The field may have gone by an undo since the command began.
    void TellValue(const CFPoint& p) {
        CGjChang* const field = CurrentField(static_cast<CTvoHostDataBase&>(*m_pDataBase));
        if (!field) return AppendPromptText(kNoField);
        const float x = p.x / field->m_fCoordScale, y = p.y / field->m_fCoordScale;
        if (!field->m_pChang->PointInChang(x, y)) return AppendPromptText("*此点不在场内*");
        const double value =
            static_cast<double>(field->m_pChang->Get_Value(x, y)) * static_cast<double>(field->m_fValueScale);
        AppendPromptText(CString("值 = " + ValueText(value) + ", 场坐标 (" + ValueText(static_cast<double>(x)) +
                                 ", " + ValueText(static_cast<double>(y)) + ")"));
    }
};

/// Turns something about the current field; all that are shown follow it.
void Switch(CTvoHostDataBase& db, CTvoViewMgr& view, int CGjChang::*flag, const char* what) {
    CGjChang* const current = CurrentField(db);
    if (!current) return Tell(view, kNoField);
    const int on = !(current->*flag);
    for (CGjChang* field : ShownFields(db)) {
        field->*flag = on;
        ShowAnew(view, field);
    }
    Tell(view, std::string(what) + (on ? ": 显示" : ": 关闭"));
}

}  // namespace

CGjChang* CurrentField(CTvoHostDataBase& db) {
    const std::vector<CGjChang*> shown = ShownFields(db);
    return shown.empty() ? nullptr : shown.back();
}

void OpenField(CTvoHostDataBase& db, CTvoViewMgr& view) {
    CWindowSystem* const system = CWindowSystem::Current();
    if (!system) return;
    const auto path = system->AskPath({false, "打开场", "场文件", "*.txt *.msh", ""});
    if (!path) return;
    auto chang = std::make_unique<CChang>();
    try {
        const FieldFileTally read = ReadFieldFile(*path, *chang);
        if (read.values > 1) chang->m_nValue = AskValue(std::min(read.values, int{CChang::kValues}));
        if (chang->m_nValue < 0) return;
    } catch (const DataFailure& failure) {
        const std::string text = "不能打开场 " + *path + ": " + ReasonInChinese(failure.what(), *path);
        system->ShowMessage(text);
        Tell(view, "*" + text + "*");
        return;
    }
    const FieldTally tally = TallyField(*chang);
    db.Start();
    CGjChang* const field = AddField(db, std::move(chang), NextFieldTag(db), {}, GJ_STATUS_NORMAL);
    HideOthers(db, field);
    Tell(view, FieldTitle(*field) + ", " + RangeNote(*field->m_pChang, field->m_pChang->m_nValue, 1));
    if (tally.passedOver > 0) Tell(view, "*有 " + std::to_string(tally.passedOver) + " 个三角形不能显示*");
    view._Svr_ShowAll();
}

void AskFieldLook(CTvoHostDataBase& db, CTvoViewMgr& view) {
    const std::vector<CGjChang*> fields = AllFields(db);
    if (!CWindowSystem::Current()) return;
    if (fields.empty()) return Tell(view, "*没有场, 请先打开场*");
    CGjChang* const current = CurrentField(db);
    if (CGjChang* const field = LookDialog(db, fields, current ? current : fields.back()).Ask())
        ShowAnew(view, field);
}

void ShowFieldsAs(CTvoHostDataBase& db, CTvoViewMgr& view, FIELD_DISPLAY display) {
    const std::vector<CGjChang*> fields = ShownFields(db);
    if (fields.empty()) Tell(view, kNoField);
    for (CGjChang* field : fields) field->DisplayChang(&view, display);
}

void SwitchFieldMesh(CTvoHostDataBase& db, CTvoViewMgr& view) {
    Switch(db, view, &CGjChang::m_bDrawGrid, "网格");
}

void SwitchFieldNumbers(CTvoHostDataBase& db, CTvoViewMgr& view) {
    Switch(db, view, &CGjChang::m_bDrawValue, "节点数值");
}

void AskFieldValues(CTvoHostDataBase& db, CTvoViewMgr& view) {
    if (!CurrentField(db)) return Tell(view, kNoField);
    view.DoWork(new FieldValueCommand(db, view));
}

void DensifyCurrentField(CTvoHostDataBase& db, CTvoViewMgr& view) {
    CGjChang* const field = CurrentField(db);
    if (!field) return Tell(view, kNoField);
    if (field->m_pChang->m_arrTri.GetSize() > kMostFieldTriangles / 4) {
        Tell(view, "*加密后超过 " + std::to_string(kMostFieldTriangles) + " 个三角形*");
        return;
    }
    db.Start();
    if (const CGjChang* const fine = DensifyField(db, field)) Tell(view, "加密: " + FieldTitle(*fine));
}

void DeleteCurrentField(CTvoHostDataBase& db, CTvoViewMgr& view) {
    CGjChang* const field = CurrentField(db);
    if (!field) return Tell(view, kNoField);
    const std::string title = FieldTitle(*field);
    db.Start();
    db.DeleteGouJian(field);
    view._Svr_ShowAgain();
    Tell(view, "删除: " + title);
}
