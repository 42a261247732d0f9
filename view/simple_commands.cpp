#include "view/simple_commands.h"

#include <string>

#include "model/goujian.h"
#include "model/profile.h"
#include "model/tvo_data_base.h"
#include "platform/number_text.h"
#include "platform/saturate.h"
#include "view/tvo_view_mgr.h"

namespace {

constexpr double kMillimetres = 1000;  // heights are kept in these, and told in metres

std::string Metres(double millimetres, int decimals) { return FixedReal(millimetres / kMillimetres, decimals); }

}  // namespace

// ---- one line of text -------------------------------------------------------------------------------------

CCmdSimpleInput::CCmdSimpleInput(CTvoDataBase* db, CTvoViewMgr* view) {
    m_pDataBase = db;
    m_pView = view;
    m_strName = "CCmdSimpleInput";
    m_nObjectHint = QS_TEXT;
}

unsigned CCmdSimpleInput::OnGetObject(OBJECT_HINT hint, void* object, int) {
    if (hint != OH_TEXT) return QS_TEXT;
    m_strInput = static_cast<const char*>(object);
    if (!m_strInput.IsEmpty()) return QS_FINISH;
    if (!m_bHasDefault) return QS_TEXT;
    m_strInput = m_strDefault;
    m_bDone = 1;
    return QS_FINISH;
}

unsigned CCmdSimpleInput::OnQueryState() {
    if (m_bDone) return QS_FINISH;
    SetPromptText(m_strPrompt);
    return QS_TEXT;
}

void CCmdSimpleInput::OnComplete() {
    if (m_pEnd) m_pEnd(m_pDataBase, static_cast<CTvoViewMgr*>(m_pView), m_strInput);
    CDtWorkEx::OnComplete();
}

// ---- one selection ----------------------------------------------------------------------------------------

CCmdSimpleSelect::CCmdSimpleSelect(CTvoDataBase* db, CTvoViewMgr* view, unsigned char filter, int kind) : m_byteType(filter) {
    m_pDataBase = db;
    m_pView = view;
    m_strName = "CCmdSimpleSelect";
    m_nObjectHint = QS_SELECT;
    m_nSelectKind = kind;
    m_byteFilter = filter;
}

// An object that a click took out again is not taken.
unsigned CCmdSimpleSelect::OnGetObject(OBJECT_HINT hint, void* object, int) {
    if (m_bSelectFirst) {
        auto* const obj = static_cast<CGouJianEx*>(object);
        if (hint != OH_OBJECT) return QS_SELECT;
        CString error;
        if (m_pCheck && !m_pCheck(m_pDataBase, obj, error)) {
            SetPromptText(error);
            m_bDone = 0;
            obj->set_m_byteStatus(0);
            obj->ReGen(static_cast<CTvoViewMgr*>(m_pView));
            return QS_SELECT;
        }
        m_arrObject.Add(obj);
    } else if (hint == OH_OBJECT) {
        auto* const objects = static_cast<CList<CGouJianEx*, CGouJianEx*>*>(object);
        for (POSITION p = objects->GetHeadPosition(); p;) m_arrObject.Add(objects->GetNext(p));
    }
    m_bDone = 1;
    return QS_FINISH;
}

unsigned CCmdSimpleSelect::OnQueryState() {
    if (m_bDone) return QS_FINISH;
    SetPromptText(m_strPrompt);
    return QS_SELECT;
}

void CCmdSimpleSelect::OnComplete() {
    if (m_pEnd) m_pEnd(m_pDataBase, static_cast<CTvoViewMgr*>(m_pView), m_arrObject);
}

// ---- text height ------------------------------------------------------------------------------------------

CCmdSetTextHeight::CCmdSetTextHeight(CTvoDataBase* db, CTvoViewMgr* view, int bView) : m_bView(bView) {
    m_pDataBase = db;
    m_pView = view;
    m_strName = "CCmdSetTextHeight";
    m_nObjectHint = QS_TEXT;
    m_bEchoPrompt = 0;
    const std::string height = view ? Metres(view->m_nTextHeight, 2) : "";
    m_strPrompt = bView ? CString("[当前字高" + height + "米, 请输入新字高]<" + height + ">") : CString("请输入新的字高(单位米)");
}

unsigned CCmdSetTextHeight::OnGetObject(OBJECT_HINT hint, void* object, int) {
    const std::string_view text = hint == OH_TEXT ? static_cast<const char*>(object) : "";
    const auto finish = [&] {
        m_bDone = 1;
        return static_cast<unsigned>(QS_FINISH);
    };
    if (text.empty()) return finish();
    const double height = LeadingReal(text) * kMillimetres;
    const double least = static_cast<double>(g_cTvoProfile.m_fTextHeightMin), most = static_cast<double>(g_cTvoProfile.m_fTextHeightMax);
    if (!(height >= least)) {
        AppendPromptText(CString("最小值为" + Metres(least, 3) + "米"));
        return QS_TEXT;
    }
    if (height > most) {
        AppendPromptText(CString("最大值为" + Metres(most, 3) + "米"));
        return QS_TEXT;
    }
    if (m_bView) {
        static_cast<CTvoViewMgr*>(m_pView)->m_nTextHeight = SaturatedInt(height);
        m_pView->Invalidate();
    } else if (m_pDataBase) {
        m_pDataBase->SetTextHeight(static_cast<float>(height), nullptr);
    }
    return finish();
}

unsigned CCmdSetTextHeight::OnQueryState() {
    if (m_bDone) return QS_FINISH;
    const int height = m_pView ? static_cast<CTvoViewMgr*>(m_pView)->m_nTextHeight : 0;
    SetPromptText(CString("当前字高" + Metres(height, 2) + "米, 请输入新字高(米)"));
    return QS_TEXT;
}
