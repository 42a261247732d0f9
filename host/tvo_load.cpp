#include "host/tvo_load.h"

#include <bit>
#include <cstdio>

#include "model/draw_graph.h"
#include "model/profile.h"
#include "model/tvo_data_base.h"
#include "plates/mian_goujian.h"
#include "platform/acad_color.h"

namespace {

constexpr float kArrow = 600.0f;       // length of the mark, model units
constexpr float kTextHeight = 300.0f;
constexpr int kLoadColor = 30;         // orange

template <class Word>
void Put(std::FILE* file, Word word) {
    unsigned char bytes[sizeof word];
    for (std::size_t i = 0; i < sizeof word; ++i) bytes[i] = static_cast<unsigned char>(word >> (8 * i));
    std::fwrite(bytes, 1, sizeof bytes, file);
}

template <class Word>
bool Take(std::FILE* file, Word& word) {
    unsigned char bytes[sizeof word];
    if (std::fread(bytes, 1, sizeof bytes, file) != sizeof bytes) return false;
    word = 0;
    for (std::size_t i = 0; i < sizeof word; ++i) word |= static_cast<Word>(bytes[i]) << (8 * i);
    return true;
}

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
    Put(file, m_dwGouJianNO);
    Put(file, m_dwGouJianID);
    Put(file, m_dwPlateID);
    Put(file, std::bit_cast<std::uint64_t>(m_dValue));
    return std::ferror(file) == 0;
}

int CTvoLoad::ReadBinary(std::FILE* file) {
    std::uint32_t number = 0, id = 0, plate = 0;
    std::uint64_t value = 0;
    if (!Take(file, number) || !Take(file, id) || !Take(file, plate) || !Take(file, value)) return 0;
    if (id >> 24 != kTvoLoadType) return 0;
    m_dwGouJianNO = number;
    m_dwGouJianID = id;
    m_dwPlateID = plate;
    m_dValue = std::bit_cast<double>(value);
    return 1;
}
