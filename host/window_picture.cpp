#include "host/window_picture.h"

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "platform/canvas/dc.h"
#include "platform/canvas/surface.h"
#include "platform/window_system.h"

namespace {

/// The last lines that fit.
void DrawEdit(CDC& dc, const CEdit& edit, const CRect& place) {
    CBrush ground(RGB(255, 255, 255));
    dc.FillRect(place, &ground);
    CFont font;
    font.CreateFont(13, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, DEFAULT_QUALITY, 0, "");
    CFont* const old = dc.SelectObject(&font);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(0);
    std::vector<std::string> lines;
    std::istringstream text(edit.GetWindowText().GetString());
    for (std::string line; std::getline(text, line); lines.push_back(line))
        if (!line.empty() && line.back() == '\r') line.pop_back();
    constexpr int kLine = 17;
    const auto room = static_cast<std::size_t>(std::max(1, place.Height() / kLine));
    int y = place.top;
    for (std::size_t i = lines.size() - std::min(lines.size(), room); i < lines.size(); ++i, y += kLine)
        dc.TextOut(place.left + 2, y, CString(lines[i]));
    dc.SelectObject(old);
}

void DrawInto(CDC& dc, const CWindowSystem& system, const CWnd& window, CPoint origin) {
    const CRect client = window.GetClientRect();
    CRect place(origin.x, origin.y, origin.x + client.Width(), origin.y + client.Height());
    if (place.IsRectEmpty()) return;
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(place);
    if (const auto* edit = dynamic_cast<const CEdit*>(&window)) {
        DrawEdit(dc, *edit, place);
    } else if (window.ClientSurface()) {
        CDC source(window.ClientSurface());
        dc.BitBlt(place.left, place.top, place.Width(), place.Height(), &source, 0, 0, SRCCOPY);
    }
    for (const CWnd* child : system.Windows()) {
        if (child->GetParent() != &window || child->Kind() == WindowKind::kTool || !child->IsWindowVisible())
            continue;
        CPoint corner(0, 0);
        child->ClientToScreen(corner);
        window.ScreenToClient(corner);
        DrawInto(dc, system, *child, {origin.x + corner.x, origin.y + corner.y});
    }
    dc.RestoreDC(saved);
}

}  // namespace

std::shared_ptr<CSurface> PictureOfWindow(const CWindowSystem& system, const CWnd& window) {
    const CRect client = window.GetClientRect();
    const int density = window.ClientSurface() ? window.ClientSurface()->Density() : 1;
    auto picture =
        std::make_shared<CSurface>(std::max(client.Width(), 1), std::max(client.Height(), 1), density);
    CDC dc(picture);
    DrawInto(dc, system, window, {0, 0});
    return picture;
}
