#include "host/tvo_rider.h"

#include <bit>
#include <cmath>

#include "geometry/fregion.h"
#include "geometry/tolerance.h"
#include "host/little_endian.h"
#include "model/draw_graph.h"
#include "model/profile.h"
#include "model/tvo_data_base.h"
#include "net/gj_net_line.h"
#include "platform/acad_color.h"

namespace {

constexpr int kRiderColor = 96;  // dark green
constexpr int kCopyPen = 13;     // R2_COPYPEN
constexpr float kWidest = 1e9f;  // mm

float Degrees(float radians) { return radians * 180.0f / tolerance::kHalfTurnF; }

}  // namespace

void CTvoRider::OnCalcParameters() {
    if (m_pNetLine || !m_pDataBase) return;
    CGouJianEx* line = m_pDataBase->FindGouJian(m_dwLineID);
    if (line && line->QueryBasicType() == kBasicLine) m_pNetLine = static_cast<CGjNetLine*>(line);
}

// The curved edges of an arc's strip lie about the line's own centre.
int CTvoRider::DrawGraph(CDrawGraph* g) {
    CFRegion strip;
    GetDiTuRegion(m_fWidth, strip);
    for (int i = 0; i < strip.GetSize(); ++i) {
        const CFShoot &a = strip[i], &b = strip[(i + 1) % strip.GetSize()];
        if (a.IsLine()) {
            g->Draw_Line(a.x, a.y, b.x, b.y, 1.0f, 'A', 1, kCopyPen);
            continue;
        }
        const CGjNetLine& line = *m_pNetLine;
        const float r = line.GetR() + (i == 1 ? m_fWidth : -m_fWidth) / 2;
        g->Draw_Arc(line.m_fCenterX, line.m_fCenterY, r, Degrees(line.m_fStartDir), Degrees(line.m_fEndDir),
                    1.0f, 'A', 1, kCopyPen);
    }
    return 1;
}

void CTvoRider::GetDrawInfo(unsigned char status, char, unsigned long& colour, int& lineType) {
    colour = GetAcadRGBColor(status == GJ_STATUS_SELECTED ? g_cTvoProfile.m_nSelLineColor : kRiderColor);
    lineType = 0;
}

int CTvoRider::WriteBinary(std::FILE* file) {
    PutLittleEndian(file, m_dwGouJianNO);
    PutLittleEndian(file, m_dwGouJianID);
    PutLittleEndian(file, m_dwLineID);
    PutLittleEndian(file, std::bit_cast<std::uint32_t>(m_fWidth));
    return std::ferror(file) == 0;
}

int CTvoRider::ReadBinary(std::FILE* file) {
    std::uint32_t number = 0, id = 0, line = 0, bits = 0;
    if (!TakeLittleEndian(file, number) || !TakeLittleEndian(file, id) || !TakeLittleEndian(file, line) ||
        !TakeLittleEndian(file, bits))
        return 0;
    const float width = std::bit_cast<float>(bits);
    if (id >> 24 != kTvoRiderType || !(width > 0 && width <= kWidest)) return 0;
    m_dwGouJianNO = number;
    m_dwGouJianID = id;
    m_dwLineID = line;
    m_fWidth = width;
    return 1;
}
