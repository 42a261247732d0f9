#include "host/net_json.h"

#include "host/net_walk.h"
#include "host/tvo_load.h"
#include "net/gj_net_line.h"
#include "net/gj_net_node.h"
#include "net/grid_data_base.h"
#include "plates/mian_goujian.h"

Json NodeJson(const CGjNetNode& node) {
    return {{"type", "node"},           {"id", node.m_dwGouJianID}, {"no", node.m_dwGouJianNO},
            {"x", JsonNumber(node.m_fX)}, {"y", JsonNumber(node.m_fY)}, {"storey", node.m_nCeng}};
}

Json LineJson(const CGjNetLine& line) {
    return {{"type", "line"},
            {"id", line.m_dwGouJianID},
            {"no", line.m_dwGouJianNO},
            {"start", line.m_pStartNode->m_dwGouJianID},
            {"end", line.m_pEndNode->m_dwGouJianID},
            {"arc", line.m_nArc},
            {"bulge", JsonNumber(line.m_fBulge)},
            {"length", JsonNumber(line.m_fLength)},
            {"storey", line.m_nCeng}};
}

Json PlateJson(const CMianGouJian& plate) {
    Json sides = Json::array();
    for (const CGjXingZhuangBian& shape : plate.m_arrXingZhuangBian) {
        Json side = Json::array();
        for (const CJainTuBanBian& piece : shape.m_arrBian)
            side.push_back({static_cast<std::uint32_t>(piece.m_nLineID), piece.m_nDirection});
        sides.push_back(std::move(side));
    }
    return {{"type", "plate"},
            {"id", plate.m_dwGouJianID},
            {"no", plate.m_dwGouJianNO},
            {"tag", plate.m_dwTag},
            {"area", JsonNumber(plate.m_fArea)},
            {"perimeter", JsonNumber(plate.m_fZhouChang)},
            {"cx", JsonNumber(plate.m_fCenterX)},
            {"cy", JsonNumber(plate.m_fCenterY)},
            {"sides", std::move(sides)}};
}

Json LoadJson(const CTvoLoad& load) {
    return {{"type", "load"},
            {"id", load.m_dwGouJianID},
            {"no", load.m_dwGouJianNO},
            {"plate", load.m_dwPlateID},
            {"value", JsonNumber(load.m_dValue)}};
}

Json ResultJson(const CGjNetLine* line, const CGridDataBase& db) {
    return {{"type", "result"},
            {"line", line ? Json(line->m_dwGouJianID) : Json(nullptr)},
            {"existed", db.m_bLineExisted != 0},
            {"swapped", db.m_bLineSwapped != 0},
            {"degenerate", db.m_bLineDegenerate != 0}};
}

Json StatJson(CGridDataBase& db) {
    return {{"type", "stat"},
            {"nodes", NetNodes(db).size()},
            {"lines", NetLines(db).size()},
            {"plates", NetPlates(db).size()},
            {"dangling", DanglingLines(db).size()},
            {"area", JsonNumber(PlateArea(db))},
            {"canUndo", db.CanUndo() != 0},
            {"canRedo", db.CanRedo() != 0}};
}
