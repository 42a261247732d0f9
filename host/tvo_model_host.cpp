#include "host/tvo_model_host.h"

#include <vector>

#include "host/host_data_base.h"
#include "host/little_endian.h"
#include "host/tvo_load.h"

namespace {

constexpr std::uint32_t kPlatesFollow = 1;

}  // namespace

std::unique_ptr<CGouJianEx> TvoModelHost::Make(unsigned char type) const {
    return type == kTvoLoadType ? std::make_unique<CTvoLoad>() : nullptr;
}

bool TvoModelHost::CanStand(const CGouJianEx& component, CGridDataBase& db) const {
    const auto& load = static_cast<const CTvoLoad&>(component);
    CGouJianEx* plate = db.FindGouJian(load.m_dwPlateID);
    return plate && plate->QueryBasicType() == kBasicPlate &&
           !static_cast<CTvoHostDataBase&>(db).FindLoad(load.m_dwPlateID);
}

void TvoModelHost::WriteData(CGridDataBase& db, std::FILE* out) const {
    auto& host = static_cast<CTvoHostDataBase&>(db);
    const std::vector<std::uint32_t> kept = host.KeptNodes();
    const bool follow = host.PlatesFollow() && host.GetGouJianCount(GJLX_MIAN) == 0;
    if (kept.empty() && !follow) return;
    PutLittleEndian(out, follow ? kPlatesFollow : 0u);
    PutLittleEndian(out, static_cast<std::uint32_t>(kept.size()));
    for (const std::uint32_t id : kept) PutLittleEndian(out, id);
}

bool TvoModelHost::ReadData(CGridDataBase& db, std::FILE* in) const {
    auto& host = static_cast<CTvoHostDataBase&>(db);
    std::uint32_t flags = 0, count = 0, id = 0;
    if (!TakeLittleEndian(in, flags)) return std::feof(in) != 0;  // no such section
    if (!TakeLittleEndian(in, count)) return false;
    for (; count > 0; --count) {
        if (!TakeLittleEndian(in, id)) return false;
        CGouJianEx* node = host.FindGouJian(id);
        if (node && node->QueryBasicType() == kBasicNode) host.KeepNode(static_cast<CGjNetNode*>(node));
    }
    if (flags & kPlatesFollow) host.FollowWithPlates();
    return true;
}
