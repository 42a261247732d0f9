// Plates in files: the border alone. The lines must stand in the data base before a plate is read.
#include <algorithm>

#include "net/file_block.h"
#include "net/grid_data_base.h"
#include "plates/mian_goujian.h"

using file_block::Joined;
using file_block::Line;
using file_block::ReadWords;
using file_block::WriteLine;
using file_block::WriteWords;

namespace {

// How the reading of a part went.
enum class Outcome {
    kDone,
    kNoSuchLine,  // the part was read, and names a line that isn't there
    kWrongKey,    // another part stands here
    kBroken,      // the file ends, or has an impossible count: nothing sensible can follow
};

CGjNetLine* FindLine(int identity) {
    CGouJianEx* found =
        g_pGridDataBase ? g_pGridDataBase->FindGouJian(static_cast<std::uint32_t>(identity)) : nullptr;
    return found && found->QueryBasicType() == kBasicLine ? static_cast<CGjNetLine*>(found) : nullptr;
}

bool IsPossible(int count) { return count >= 0 && count <= CGjXingZhuangBian::kMostParts; }

// Room for parts that are read one by one: a count takes no memory by itself.
int RoomFor(int count) { return std::min(count, 64); }

Outcome Resolve(CJainTuBanBian& side) {
    side.m_pNetLine = FindLine(side.m_nLineID);
    return side.m_pNetLine ? Outcome::kDone : Outcome::kNoSuchLine;
}

// A key line at which the file ends is a torn one: something always follows.
Outcome ReadKey(std::FILE* file, const char* key) {
    const Line line(file);
    if (line.IsThere() && line.Holds(key)) return Outcome::kDone;
    return !line.IsThere() || std::feof(file) ? Outcome::kBroken : Outcome::kWrongKey;
}

Outcome ReadText(CJainTuBanBian& side, std::FILE* file) {
    if (const Outcome key = ReadKey(file, "Bian"); key != Outcome::kDone) return key;
    Line data(file);
    if (!data.IsThere()) return Outcome::kBroken;
    data >> side.m_nLineNO >> side.m_nLineID >> side.m_nDirection;
    return Resolve(side);
}

Outcome ReadBlock(CJainTuBanBian& side, std::FILE* file) {
    if (!ReadWords(file, side.m_nLineNO, side.m_nLineID, side.m_nDirection)) return Outcome::kBroken;
    return Resolve(side);
}

// The lines of a shape side. Its count is that of the lines it holds, however the reading ends.
template <class ReadSide, class GoesOn>
Outcome ReadSides(CGjXingZhuangBian& shape, int count, ReadSide readSide, GoesOn goesOn) {
    shape.m_arrBian.RemoveAll();
    shape.m_nBian = 0;
    if (!IsPossible(count)) return Outcome::kBroken;
    shape.m_arrBian.Reserve(RoomFor(count));
    Outcome outcome = Outcome::kDone;
    while (shape.m_nBian < count && goesOn(outcome)) {
        CJainTuBanBian side;
        side.m_nIndex = shape.m_nBian + 1;
        outcome = readSide(side);
        if (outcome == Outcome::kBroken) break;
        shape.m_arrBian.Add(side);
        shape.m_nBian = shape.m_arrBian.GetSize();
    }
    return outcome;
}

// Lines that are missing are passed over in silence.
Outcome ReadText(CGjXingZhuangBian& shape, std::FILE* file) {
    if (const Outcome key = ReadKey(file, "XingZhuangBian"); key != Outcome::kDone) return key;
    Line data(file);
    int count = -1;
    data >> count;
    const Outcome outcome = ReadSides(
        shape, count, [&](CJainTuBanBian& side) { return ReadText(side, file); },
        [](Outcome) { return true; });
    return outcome == Outcome::kBroken ? outcome : Outcome::kDone;
}

// Stops at the first line that is missing.
Outcome ReadBlock(CGjXingZhuangBian& shape, std::FILE* file) {
    int count = -1;
    ReadWords(file, count);
    return ReadSides(
        shape, count, [&](CJainTuBanBian& side) { return ReadBlock(side, file); },
        [](Outcome so_far) { return so_far == Outcome::kDone; });
}

}  // namespace

// --- a border line ---------------------------------------------------------------------------------------

int CJainTuBanBian::SaveData(std::FILE* file) {
    const std::uint32_t number =
        m_pNetLine ? m_pNetLine->get_m_dwGouJianNO() : static_cast<std::uint32_t>(m_nLineNO);
    const std::uint32_t identity =
        m_pNetLine ? m_pNetLine->get_m_dwGouJianID() : static_cast<std::uint32_t>(m_nLineID);
    const int written = WriteLine(file, "#####Bian" + std::to_string(m_nIndex)) &&
                        WriteLine(file, Joined({number, identity, static_cast<std::uint32_t>(m_nDirection)}));
    return written && m_pNetLine;
}
int CJainTuBanBian::LoadData(std::FILE* file) { return ReadText(*this, file) == Outcome::kDone; }
int CJainTuBanBian::WriteBinary(std::FILE* file) {
    return WriteWords(file, m_nLineNO, m_nLineID, m_nDirection);
}
int CJainTuBanBian::ReadBinary(std::FILE* file) { return ReadBlock(*this, file) == Outcome::kDone; }

// --- a shape side ----------------------------------------------------------------------------------------

int CGjXingZhuangBian::SaveData(std::FILE* file) {
    int whole = WriteLine(file, "####XingZhuangBian" + std::to_string(m_nIndex)) &&
                WriteLine(file, std::to_string(m_nBian));
    for (CJainTuBanBian& side : m_arrBian) whole &= side.SaveData(file);
    return whole;
}
int CGjXingZhuangBian::LoadData(std::FILE* file) { return ReadText(*this, file) == Outcome::kDone; }

int CGjXingZhuangBian::WriteBinary(std::FILE* file) {
    int whole = WriteWords(file, m_nBian);
    for (CJainTuBanBian& side : m_arrBian) whole &= side.WriteBinary(file);
    return whole;
}
int CGjXingZhuangBian::ReadBinary(std::FILE* file) { return ReadBlock(*this, file) == Outcome::kDone; }

// --- a plate ---------------------------------------------------------------------------------------------

int CMianGouJian::SaveData(std::FILE* file) {
    int whole =
        WriteLine(file, "###JianTuBan" + Joined({m_dwGouJianNO})) &&
        WriteLine(file,
                  Joined({m_dwGouJianNO, m_dwGouJianID, static_cast<std::uint32_t>(m_nXingZhuangBian)}));
    for (CGjXingZhuangBian& shape : m_arrXingZhuangBian) whole &= shape.SaveData(file);
    return whole;
}

int CMianGouJian::LoadData(std::FILE* file) {
    if (!Line(file).Holds("###JianTuBan")) return 0;
    Line data(file, 290);
    int count = -1;
    data >> m_dwGouJianNO >> m_dwGouJianID >> count;
    return ReadBorder(count,
                      [file](CGjXingZhuangBian& shape) { return ReadText(shape, file) != Outcome::kBroken; });
}

int CMianGouJian::WriteBinary(std::FILE* file) {
    int whole = WriteWords(file, m_dwGouJianNO, m_dwGouJianID, m_nXingZhuangBian);
    for (CGjXingZhuangBian& shape : m_arrXingZhuangBian) whole &= shape.WriteBinary(file);
    return whole;
}

int CMianGouJian::ReadBinary(std::FILE* file) {
    int count = -1;
    ReadWords(file, m_dwGouJianNO, m_dwGouJianID, count);
    return ReadBorder(
        count, [file](CGjXingZhuangBian& shape) { return ReadBlock(shape, file) != Outcome::kBroken; });
}

// Whether a shape side found its lines isn't asked: a plate with a gap has no figures, and says so.
template <class ReadShape>
int CMianGouJian::ReadBorder(int count, ReadShape readShape) {
    ForgetBorder();
    bool sound = IsPossible(count);
    if (sound) m_arrXingZhuangBian.Reserve(RoomFor(count));
    while (sound && m_nXingZhuangBian < count) {
        m_arrXingZhuangBian.Add(CGjXingZhuangBian());
        CGjXingZhuangBian& shape = m_arrXingZhuangBian[m_nXingZhuangBian];
        shape.m_nIndex = ++m_nXingZhuangBian;
        sound = readShape(shape);
    }
    BorderChanged();
    CalcGeographicData();
    set_Gjlx(GJLX_MIAN);
    set_m_byteStatus(GJ_STATUS_NORMAL);
    return sound && StateOfBorder() != BorderState::kOpen;
}

void CMianGouJian::ForgetBorder() {
    _FreeMemory();
    m_nDomainEdge = 0;
    m_arrXingZhuangDir.RemoveAll();
    m_nXingZhuangBian = 0;
    m_arrXingZhuangBian.RemoveAll();
    m_fArea = m_fCenterX = m_fCenterY = m_fZhouChang = 0;
    m_rect = CFRect();
    m_region.RemoveAll();
    m_arrBoundery.RemoveAll();
    m_arrBounderyDir.RemoveAll();
    m_arrVertex.RemoveAll();
    m_bParamCalculated = 0;
}
