#include "host/tvo_model_host.h"

#include <bit>
#include <cmath>
#include <typeinfo>
#include <vector>

#include "host/host_data_base.h"
#include "host/little_endian.h"
#include "host/parts_file.h"
#include "host/tvo_load.h"
#include "host/tvo_rider.h"
#include "model/draw_graph.h"
#include "model/gj_text.h"
#include "net/gj_net_node.h"
#include "platform/code_page.h"

namespace {

constexpr std::uint32_t kPlatesFollow = 1, kHasGrid = 2, kGridShown = 4;
constexpr std::uint32_t kLongestSpacings = 1 << 20;  // bytes

bool IsGraphics(unsigned char type) {
    return (type >= GJLX_POINT && type <= GJLX_CIRCLE_RGN) || type == GJLX_POLYGON_RGN;
}

// ---- the background grid ----------------------------------------------------------------------------

/// As CGridDataBase gives it to a new model.
CBackgrnd NewGrid() {
    CBackgrnd grid;
    grid.m_nMode = 1;
    grid.m_strKuaX = "6*40";
    grid.m_strKuaY = "6*25";
    grid.m_strKuaZ = "0*0";
    return grid;
}

bool SameGrid(const CBackgrnd& a, const CBackgrnd& b) {
    return a.m_nMode == b.m_nMode && a.m_fX0 == b.m_fX0 && a.m_fY0 == b.m_fY0 && a.m_fZ0 == b.m_fZ0 &&
           a.m_strKuaX == b.m_strKuaX && a.m_strKuaY == b.m_strKuaY && a.m_strKuaZ == b.m_strKuaZ;
}

void WriteGrid(const CBackgrnd& grid, std::FILE* out) {
    PutLittleEndian(out, static_cast<std::uint32_t>(grid.m_nMode));
    for (const float v : {grid.m_fX0, grid.m_fY0, grid.m_fZ0})
        PutLittleEndian(out, std::bit_cast<std::uint32_t>(v));
    for (const CString* text : {&grid.m_strKuaX, &grid.m_strKuaY, &grid.m_strKuaZ}) {
        PutLittleEndian(out, static_cast<std::uint32_t>(text->GetLength()));
        std::fwrite(text->GetString(), 1, text->Std().size(), out);
    }
}

bool ReadSpacings(std::FILE* in, CString& text) {
    std::uint32_t length = 0;
    if (!TakeLittleEndian(in, length) || length > kLongestSpacings) return false;
    std::string bytes(length, '\0');
    if (std::fread(bytes.data(), 1, length, in) != length || !IsUtf8(bytes)) return false;
    text = CString(std::move(bytes));
    return true;
}

bool ReadGrid(std::FILE* in, CBackgrnd& grid) {
    std::uint32_t mode = 0;
    if (!TakeLittleEndian(in, mode) || mode > 1) return false;
    grid.m_nMode = static_cast<int>(mode);
    for (float* v : {&grid.m_fX0, &grid.m_fY0, &grid.m_fZ0}) {
        std::uint32_t bits = 0;
        if (!TakeLittleEndian(in, bits)) return false;
        *v = std::bit_cast<float>(bits);
        if (!std::isfinite(*v)) return false;
    }
    return ReadSpacings(in, grid.m_strKuaX) && ReadSpacings(in, grid.m_strKuaY) &&
           ReadSpacings(in, grid.m_strKuaZ);
}

}  // namespace

// ---- components -------------------------------------------------------------------------------------

std::unique_ptr<CGouJianEx> TvoModelHost::Make(unsigned char type) const {
    if (type == kTvoLoadType) return std::make_unique<CTvoLoad>();
    if (type == kTvoRiderType) return std::make_unique<CTvoRider>();
    if (type == GJLX_TEXT) return std::make_unique<CGjText>();
    return IsGraphics(type) ? std::make_unique<CGouJianEx>() : nullptr;
}

int TvoModelHost::Write(CGouJianEx& component, std::FILE* out) const {
    if (IsGraphics(component.get_Gjlx())) return WriteGraph(component, out);
    if (const auto* text = dynamic_cast<CGjText*>(&component)) return WriteText(*text, out);
    return component.WriteBinary(out);
}

// The component has no identity yet.
int TvoModelHost::Read(CGouJianEx& component, std::FILE* in) const {
    if (auto* text = dynamic_cast<CGjText*>(&component)) return ReadText(*text, in);
    if (typeid(component) == typeid(CGouJianEx)) return ReadGraph(component, in);
    return component.ReadBinary(in);
}

std::string TvoModelHost::Describe(const CGouJianEx& component) const {
    const std::string id = std::to_string(component.get_m_dwGouJianID());
    if (const auto* rider = dynamic_cast<const CTvoRider*>(&component))
        return "rider " + id + " on line " + std::to_string(rider->m_dwLineID);
    if (const auto* load = dynamic_cast<const CTvoLoad*>(&component))
        return "load " + id + " on plate " + std::to_string(load->m_dwPlateID);
    return ModelHost::Describe(component);
}

bool TvoModelHost::CanStand(const CGouJianEx& component, CGridDataBase& db) const {
    if (const auto* load = dynamic_cast<const CTvoLoad*>(&component)) {
        CGouJianEx* plate = db.FindGouJian(load->m_dwPlateID);
        return plate && plate->QueryBasicType() == kBasicPlate &&
               !static_cast<CTvoHostDataBase&>(db).FindLoad(load->m_dwPlateID);
    }
    const auto* rider = dynamic_cast<const CTvoRider*>(&component);
    if (!rider) return true;
    CGouJianEx* line = db.FindGouJian(rider->m_dwLineID);
    return line && line->QueryBasicType() == kBasicLine;
}

// ---- what else a model has ----------------------------------------------------------------------------

void TvoModelHost::WriteData(CGridDataBase& db, std::FILE* out) const {
    auto& host = static_cast<CTvoHostDataBase&>(db);
    const std::vector<std::uint32_t> kept = host.KeptNodes();
    const bool follow = host.PlatesFollow() && host.GetGouJianCount(GJLX_MIAN) == 0;
    const bool grid = host.m_bGridShown || !SameGrid(host.GetBackgrnd(), NewGrid());
    if (kept.empty() && !follow && !grid) return;
    PutLittleEndian(
        out, (follow ? kPlatesFollow : 0u) | (grid ? kHasGrid : 0u) | (host.m_bGridShown ? kGridShown : 0u));
    PutLittleEndian(out, static_cast<std::uint32_t>(kept.size()));
    for (const std::uint32_t id : kept) PutLittleEndian(out, id);
    if (grid) WriteGrid(host.GetBackgrnd(), out);
}

bool TvoModelHost::ReadData(CGridDataBase& db, std::FILE* in) const {
    auto& host = static_cast<CTvoHostDataBase&>(db);
    host.GetBackgrnd() = NewGrid();
    std::uint32_t flags = 0, count = 0, id = 0;
    if (!TakeLittleEndian(in, flags)) return std::feof(in) != 0;  // no such section
    if (!TakeLittleEndian(in, count)) return false;
    for (; count > 0; --count) {
        if (!TakeLittleEndian(in, id)) return false;
        CGouJianEx* node = host.FindGouJian(id);
        if (node && node->QueryBasicType() == kBasicNode) host.KeepNode(static_cast<CGjNetNode*>(node));
    }
    if (flags & kPlatesFollow) host.FollowWithPlates();
    CBackgrnd grid = NewGrid();
    if (!(flags & kHasGrid)) return true;
    if (!ReadGrid(in, grid)) return false;
    host.GetBackgrnd() = grid;
    host.m_bGridShown = (flags & kGridShown) != 0;
    return true;
}
