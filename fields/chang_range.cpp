#include "fields/chang_range.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <memory>

#include "model/block_file.h"
#include "model/paths.h"

namespace {

// Each range stands behind the header of a block of 16 records of 256 bytes, one of them the header.
constexpr int kRecords = 16, kHeaderRecords = 1, kRecordBytes = 256;

struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Close>;

File Open(const char* name, const char* mode) {
    const CString path = IncludeTrailingSlash(G_strWorkPath) + CString(name);
    return File(std::fopen(path.GetString(), mode));
}

template <class T>
bool Read(std::FILE* file, T& value) {
    return std::fread(&value, sizeof value, 1, file) == 1;
}
template <class T>
void Write(std::FILE* file, const T& value) {
    std::fwrite(&value, sizeof value, 1, file);
}

std::int64_t VersionSum(std::int32_t a, std::int32_t b, std::int32_t c) {
    return std::int64_t{a} * 10000 + std::int64_t{b} * 100 + c;
}

}  // namespace

void CChangRange::Set_Default_Value() {
    m_nFlag = 0;
    m_aRange[0] = {10.0, -300.0};
    m_aRange[1] = {1000.0, -1000.0};
    m_aRange[2] = {5000.0, -5000.0};
    m_aRange[3] = {99999.0, -99999.0};
}

int CChangRange::Read_Binary(const char* name, int a, int b, int c) {
    const File file = Open(name, "rb");
    std::int32_t version[3], flag;
    if (!file || !Read(file.get(), version)) return 0;
    if (VersionSum(a, b, c) < VersionSum(version[0], version[1], version[2])) {
        m_nFlag = 0;
        return 0;
    }
    CChangBounds ranges[4];
    if (!Read(file.get(), flag)) return 0;
    for (CChangBounds& range : ranges)
        if (!Search_NextBlock_Header(file.get(), kRecords, kHeaderRecords, kRecordBytes) ||
            !Read(file.get(), range))
            return 0;
    m_nFlag = flag;
    std::copy(std::begin(ranges), std::end(ranges), m_aRange);
    return 1;
}

void CChangRange::Write_Binary(const char* name, int a, int b, int c) const {
    const File file = Open(name, "wb");
    if (!file) return;
    const std::int32_t version[3] = {a, b, c};
    Write(file.get(), version);
    Write(file.get(), std::int32_t{m_nFlag});
    for (const CChangBounds& range : m_aRange) {
        Fill_To_Next_Block(file.get(), kRecords, kHeaderRecords, kRecordBytes);
        Write(file.get(), range);
    }
}
