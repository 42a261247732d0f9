// Display lists as they look on white paper.
#pragma once
#include "model/draw_graph.h"
#include "model/goujian.h"
#include "platform/win_types.h"

/// White ink, exactly 0xFFFFFF, would not be seen on paper and is drawn dark, as plotting does. Any other
/// colour stays.
inline COLORREF PaperInk(unsigned long color) {
    return (color & 0xFFFFFF) == 0xFFFFFF ? RGB(51, 51, 51) : COLORREF(color & 0xFFFFFF);
}

/// Calls `visit` with each primitive of a component, with the colour and line type that a paint gives it, on
/// paper. Afterwards the list is as it was.
template <class Visit>
void ForEachOnPaper(CGouJianEx& component, Visit visit) {
    CDrawGraph* const graph = component.GetDrawGraph();
    for (CGraphEntity* entity : graph->m_aEntity) {
        const std::uint32_t oldColor = entity->m_dwColor;
        const int oldLineType = entity->m_nLineType;
        unsigned long color = oldColor;
        int lineType = oldLineType;
        if (!graph->m_bFixed)
            component.GetDrawInfo(component.get_m_byteStatus(), entity->GetPart(), color, lineType);
        entity->SetColor(PaperInk(color));
        entity->SetLineType(lineType);
        visit(*entity);
        entity->SetColor(oldColor);
        entity->SetLineType(oldLineType);
    }
}
