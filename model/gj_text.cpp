#include "model/gj_text.h"

#include "model/draw_graph.h"
#include "model/profile.h"
#include "platform/acad_color.h"

namespace {

constexpr unsigned char kStateMuted = 3;  // a state of drawing that is never stored

/// Each channel to 42 %, cut to whole steps.
unsigned long Darkened(COLORREF colour) {
    const auto dark = [](int channel) {
        return static_cast<unsigned char>(static_cast<float>(channel) * 0.42f);
    };
    return RGB(dark(GetRValue(colour)), dark(GetGValue(colour)), dark(GetBValue(colour)));
}

}  // namespace

CGjText::CGjText() : m_crColor(static_cast<std::uint32_t>(GetAcadRGBColor(g_cTvoProfile.m_nTextColor))) {}

CFRect CGjText::GetFrect() { return GetDrawGraph()->GetFrect(); }

int CGjText::DrawGraph(CDrawGraph* g) {
    CGraph_Text* text = g->Draw_Text(m_fX, m_fY, m_fHeight, m_fAngle, m_strText, 'A');
    unsigned long colour = text->m_dwColor;
    int lineType = text->m_nLineType;
    GetDrawInfo(get_m_byteStatus(), text->GetPart(), colour, lineType);
    text->SetColor(colour);
    text->SetLineType(lineType);
    return 1;
}

void CGjText::GetDrawInfo(unsigned char status, char, unsigned long& colour, int& lineType) {
    switch (status) {
        case GJ_STATUS_NORMAL:
            colour = m_crColor;
            lineType = 0;
            break;
        case GJ_STATUS_SELECTED:
            colour = Darkened(COLORREF{m_crColor});
            lineType = 1;
            break;
        case kStateMuted:
            colour = GetAcadRGBColor(g_cTvoProfile.m_nMutedColor);
            lineType = 0;
            break;
        default:
            break;
    }
}
