#include "host/editor/sample_net.h"

#include <array>
#include <string>

#include "host/host_data_base.h"
#include "platform/win_types.h"

namespace {

constexpr COLORREF kAxisColor = RGB(0x70, 0xC0, 0x70);
constexpr float kBubble = 900, kLetters = 900;  // radius and height, mm
constexpr std::uint32_t kTag = 1;

/// The circle at the end of an axis, with its number or letter.
void Bubble(CTvoHostDataBase& db, float x, float y, const std::string& name) {
    const unsigned long color = kAxisColor;
    db.DrawCircle(x, y, kBubble, -1, color, kTag, GJ_STATUS_NORMAL, 0);
    const CString text(name);
    const float width = db.GetTextWidth(text, kLetters);
    db.DrawTextA(x - width / 2, y - kLetters / 2, text, kTag, GJ_STATUS_NORMAL, kLetters, 0, &color, 0);
}

}  // namespace

void DrawSampleNet(CTvoHostDataBase& db) {
    constexpr std::array<float, 5> kAcross = {0, 6000, 12000, 18000, 24000};
    constexpr std::array<float, 4> kUp = {0, 5400, 8100, 13500};
    const auto line = [&](float x1, float y1, float x2, float y2) {
        db.AddNetLine({x1, y1, 0}, {x2, y2, 0}, 0, 0);
    };
    db.Start();
    for (const float x : {0.0f, 6000.0f, 18000.0f, 24000.0f}) line(x, kUp.front(), x, kUp.back());
    for (const float y : {kUp[1], kUp[2], kUp[3]}) line(kAcross.front(), y, kAcross.back(), y);
    line(0, 0, 6000, 0);
    line(18000, 0, 24000, 0);
    line(12000, kUp[2], 12000, kUp[3]);
    db.AddArc(CFPoint(6000, 0, 0), CFPoint(18000, 0, 0), CFPoint(12000, -3000, 0));  // the bay of the hall
    line(20400, kUp[2], 20400, kUp[3]);
    line(18000, 10800, 20400, 10800);
    db.FormPlates();
    db.DeleteIndependentNetNode();
    for (std::size_t i = 0; i < kAcross.size(); ++i) {
        const float top = kUp.back() + 3000;
        db.DrawLine(kAcross[i], kUp.back() + 600, kAcross[i], top - kBubble, -1, kAxisColor, kTag,
                    GJ_STATUS_NORMAL, 0);
        Bubble(db, kAcross[i], top, std::to_string(i + 1));
    }
    for (std::size_t i = 0; i < kUp.size(); ++i) {
        db.DrawLine(-600, kUp[i], -3000 + kBubble, kUp[i], -1, kAxisColor, kTag, GJ_STATUS_NORMAL, 0);
        Bubble(db, -3000, kUp[i], std::string(1, static_cast<char>('A' + i)));
    }
    db.SortBianHaoAll();
    db.UndoInit();
    db.GetContain().SetModifiedFlag(0);
}
