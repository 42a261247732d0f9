// Nodes and lines in files. Storey, status, tag and caches are not stored: the store gives them anew.
#include "model/tvo_data_base.h"
#include "net/file_block.h"
#include "net/gj_net_line.h"
#include "net/gj_net_node.h"
#include "platform/number_text.h"

using file_block::Joined;
using file_block::Line;
using file_block::ReadWords;
using file_block::WriteLine;
using file_block::WriteWords;

namespace {

CGjNetNode* NodeOf(std::uint32_t identity) {
    CGouJianEx* found = g_pCurrentDataBase ? g_pCurrentDataBase->FindGouJian(identity) : nullptr;
    return found && found->QueryBasicType() == kBasicNode ? static_cast<CGjNetNode*>(found) : nullptr;
}

// What was read becomes a fresh component of its type, whatever type byte and status it had.
void MakeFresh(CGouJianEx& obj, unsigned char type) {
    obj.set_Gjlx(type);
    obj.set_m_byteStatus(GJ_STATUS_NORMAL);
}

int FindNodes(CGjNetLine& line) {
    line.m_pStartNode = NodeOf(line.m_dwStartID);
    line.m_pEndNode = NodeOf(line.m_dwEndID);
    line.m_bParamCalculated = 0;  // the store calculates when the line is added
    if (!line.m_pStartNode || !line.m_pEndNode) return 0;
    MakeFresh(line, GJLX_NET_LINE);
    return 1;
}

}  // namespace

// --- nodes ------------------------------------------------------------------------------------------------

int CGjNetNode::SaveData(std::FILE* file) {
    return WriteLine(file, "###WangDian" + Joined({m_dwGouJianNO})) &&
           WriteLine(file, Joined({m_dwGouJianNO, m_dwGouJianID}) + "," + FixedReal(static_cast<double>(m_fX), 5) + "," +
                               FixedReal(static_cast<double>(m_fY), 5));
}

// The coordinates are written and not read: this form has never given them back. The binary one does.
int CGjNetNode::LoadData(std::FILE* file) {
    if (!Line(file).Holds("###WangDian")) return 0;
    Line data(file);
    if (!data.IsThere()) return 0;
    data >> m_dwGouJianNO >> m_dwGouJianID;
    MakeFresh(*this, GJLX_NET_NODE);
    return 1;
}

int CGjNetNode::WriteBinary(std::FILE* file) { return WriteWords(file, m_dwGouJianNO, m_dwGouJianID, m_fX, m_fY); }

int CGjNetNode::ReadBinary(std::FILE* file) {
    if (!ReadWords(file, m_dwGouJianNO, m_dwGouJianID, m_fX, m_fY)) return 0;
    MakeFresh(*this, GJLX_NET_NODE);
    return 1;
}

// --- lines ------------------------------------------------------------------------------------------------

int CGjNetLine::SaveData(std::FILE* file) {
    return WriteLine(file, "###WangXian" + Joined({m_dwGouJianNO})) &&
           WriteLine(file, Joined({m_dwGouJianNO, m_dwGouJianID, static_cast<std::uint32_t>(m_nArc)})) &&
           WriteLine(file, Joined({m_dwStartNO, m_dwStartID, m_dwEndNO, m_dwEndID}) + "," +
                               FixedReal(static_cast<double>(m_fBulge), 6));
}

int CGjNetLine::LoadData(std::FILE* file) {
    if (!Line(file).Holds("###WangXian")) return 0;
    Line head(file);
    head >> m_dwGouJianNO >> m_dwGouJianID >> m_nArc;
    Line ends(file);
    ends >> m_dwStartNO >> m_dwStartID >> m_dwEndNO >> m_dwEndID >> m_fBulge;
    return ends.IsThere() && FindNodes(*this);
}

int CGjNetLine::WriteBinary(std::FILE* file) {
    return WriteWords(file, m_dwGouJianNO, m_dwGouJianID, m_nArc, m_dwStartNO, m_dwStartID, m_dwEndNO, m_dwEndID, m_fBulge);
}

int CGjNetLine::ReadBinary(std::FILE* file) {
    return ReadWords(file, m_dwGouJianNO, m_dwGouJianID, m_nArc, m_dwStartNO, m_dwStartID, m_dwEndNO, m_dwEndID, m_fBulge) &&
           FindNodes(*this);
}
