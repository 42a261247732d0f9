#include "host/models/model_assembler.h"

#include <bit>

#include "host/models/crc32.h"
#include "net/gj_net_node.h"

namespace {

bool SameAttributes(const AttributeRun& a, const AttributeRun& b) {
    return a.storey == b.storey && a.tag == b.tag && a.fem == b.fem && a.zBits == b.zBits &&
           a.status == b.status;
}

}  // namespace

AttributeRun AttributesOf(const CGouJianEx& component, SectionKind kind) {
    const std::uint32_t status = component.IsVisable() ? GJ_STATUS_NORMAL : GJ_STATUS_HIDDEN;
    const float z = kind == SectionKind::kNodes ? static_cast<const CGjNetNode&>(component).m_fZ : 0;
    return {1,     component.m_nCeng, component.m_dwTag, component.m_nFEM_ID, std::bit_cast<std::uint32_t>(z),
            status};
}

void AttributeRuns::Add(const AttributeRun& one) {
    if (!m_runs.empty() && SameAttributes(m_runs.back(), one)) ++m_runs.back().count;
    else m_runs.push_back(one);
}

std::string AttributeRuns::Bytes() const {
    std::string bytes;
    for (const AttributeRun& run : m_runs) PutRun(bytes, run);
    return bytes;
}

void ModelAssembler::Section(SectionKind kind, std::uint32_t type, std::size_t count,
                             std::string_view payload) {
    m_out(HeadBytes({kind, type, static_cast<std::uint32_t>(count), payload.size(), Crc32(payload)}));
    m_out(payload);
    m_length += kSectionHeadSize + payload.size();
    ++m_sections;
}

void ModelAssembler::Counters(std::span<const std::pair<std::uint32_t, std::uint32_t>> counters) {
    std::string payload;
    for (const auto& [type, highest] : counters) {
        PutWord(payload, type);
        PutWord(payload, highest);
    }
    Section(SectionKind::kCounters, 0, counters.size(), payload);
}

void ModelAssembler::NoteStorey(int storey) {
    if (storey == m_lastStorey && !m_storeys.empty()) return;
    m_storeys.insert(storey);
    m_lastStorey = storey;
}

void ModelAssembler::Complete(ModelHeader& header) const {
    header.storeys = static_cast<std::uint32_t>(m_storeys.size());
    if (!m_storeys.empty()) {
        header.lowestStorey = *m_storeys.begin();
        header.highestStorey = *m_storeys.rbegin();
    }
    header.sections = m_sections;
    header.fileLength = m_length;
}

void PutHostRecord(std::string& payload, std::uint32_t number, std::uint32_t id,
                   const AttributeRun& attributes, std::string_view block) {
    PutWord(payload, number);
    PutWord(payload, id);
    PutWord(payload, static_cast<std::uint32_t>(block.size()));
    PutWord(payload, static_cast<std::uint32_t>(attributes.storey));
    PutWord(payload, attributes.tag);
    PutWord(payload, static_cast<std::uint32_t>(attributes.fem));
    PutWord(payload, attributes.status);
    payload.append(block);
}
