#include "host/tvo_load.h"

#include <bit>
#include <cmath>
#include <cstdio>

#include "host/little_endian.h"
#include "model/draw_graph.h"
#include "model/profile.h"
#include "model/tvo_data_base.h"
#include "plates/mian_goujian.h"
#include "platform/acad_color.h"

namespace {

constexpr float kArrow = 600.0f;       // length of the mark, model units
constexpr float kTextHeight = 300.0f;
constexpr int kLoadColor = 30;         // orange

}  // namespace

void CTvoLoad::OnCalcParameters() {
    CGouJianEx* plate = m_pDataBase ? m_pDataBase->FindGouJian(m_dwPlateID) : nullptr;
    if (!plate || plate->QueryBasicType() != kBasicPlate) return;
    const CFPoint centroid = plate->GetCentroid();
    m_fX = centroid.x;
    m_fY = centroid.y;
}

int CTvoLoad::DrawGraph(CDrawGraph* g) {
    g->Draw_Line(m_fX, m_fY + kArrow, m_fX, m_fY, -1, 'A', 0, 13);
    g->Draw_Line(m_fX, m_fY, m_fX - kArrow / 5, m_fY + kArrow / 3, -1, 'A', 0, 13);
    g->Draw_Line(m_fX, m_fY, m_fX + kArrow / 5, m_fY + kArrow / 3, -1, 'A', 0, 13);
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", m_dValue);
    g->Draw_Text(m_fX + kArrow / 3, m_fY + kArrow / 3, kTextHeight, 0, text, 'A');
    return 1;
}

void CTvoLoad::GetDrawInfo(unsigned char status, char, unsigned long& colour, int& lineType) {
    if (status == GJ_STATUS_SELECTED)
        colour = GetAcadRGBColor(g_cTvoProfile.m_nSelLineColor);
    else
        colour = GetAcadRGBColor(kLoadColor);
    lineType = 0;
}

int CTvoLoad::WriteBinary(std::FILE* file) {
    PutLittleEndian(file, m_dwGouJianNO);
    PutLittleEndian(file, m_dwGouJianID);
    PutLittleEndian(file, m_dwPlateID);
    PutLittleEndian(file, std::bit_cast<std::uint64_t>(m_dValue));
    return std::ferror(file) == 0;
}

int CTvoLoad::ReadBinary(std::FILE* file) {
    std::uint32_t number = 0, id = 0, plate = 0;
    std::uint64_t value = 0;
    if (!TakeLittleEndian(file, number) || !TakeLittleEndian(file, id) || !TakeLittleEndian(file, plate) || !TakeLittleEndian(file, value)) return 0;
    if (id >> 24 != kTvoLoadType || !std::isfinite(std::bit_cast<double>(value))) return 0;
    m_dwGouJianNO = number;
    m_dwGouJianID = id;
    m_dwPlateID = plate;
    m_dValue = std::bit_cast<double>(value);
    return 1;
}
