#include "host/net_json.h"

#include "host/net_walk.h"
#include "net/gj_net_line.h"
#include "net/gj_net_node.h"
#include "net/grid_data_base.h"

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
            {"canUndo", db.CanUndo() != 0},
            {"canRedo", db.CanRedo() != 0}};
}
