#include "host/drawing.h"

#include <iostream>

#include "host/failure.h"
#include "host/file_output.h"
#include "platform/dxf/dxf.h"

namespace {

/// The place where reading ended: "line 12", in binary drawings "byte 345".
std::string PlaceText(const DxfReadResult& result) {
    return result.m_nLine ? "line " + std::to_string(result.m_nLine) : "byte " + std::to_string(result.m_nByte);
}

}  // namespace

void ReadDrawing(const std::string& file, DXF& drawing) {
    RequireReadable(file);
    drawing.Read_FileDxf_To_Mem(file.c_str());
    CheckReading(file, drawing.GetResult());
}

void CheckReading(const std::string& file, const DxfReadResult& result) {
    switch (result.m_eOutcome) {
        case DxfOutcome::Ok: return;
        case DxfOutcome::Truncated:
            std::cerr << "warning: " << file << ": " << PlaceText(result) << ": " << result.m_strReason
                      << "; what stands before is taken\n";
            return;
        case DxfOutcome::CannotOpen: throw DataFailure("cannot read " + file + ": " + result.m_strReason);
        default: throw DataFailure(file + ": " + PlaceText(result) + ": " + result.m_strReason);
    }
}

std::string PlainText(std::string_view text) {
    std::string plain(text);
    for (char& c : plain)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = '?';
    return plain;
}

std::size_t TerminalColumns(std::string_view text) {
    std::size_t columns = 0;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte & 0xC0) == 0x80) continue;  // inside a character
        columns += byte >= 0xE3 ? 2 : 1;      // from U+3000 on nearly all characters are wide
    }
    return columns;
}
