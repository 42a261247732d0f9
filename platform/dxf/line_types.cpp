#include <array>

#include "platform/dxf/acad_style.h"

std::span<const DxfLineType> StandardLineTypes() {
    static const std::array<DxfLineType, 9> types = {{
        {"CONTINUOUS", "Solid line", {}},
        {"DASHED", "__ __ __ __ __ __ __ __", {12.7f, -6.35f}},
        {"HIDDEN", "_ _ _ _ _ _ _ _ _ _ _", {6.35f, -3.175f}},
        {"CENTER", "____ _ ____ _ ____ _ __", {31.75f, -6.35f, 6.35f, -6.35f}},
        {"PHANTOM", "_____ _ _ _____ _ _ ___", {31.75f, -6.35f, 6.35f, -6.35f, 6.35f, -6.35f}},
        {"DOT", ". . . . . . . . . . . .", {0, -6.35f}},
        {"DASHDOT", "__ . __ . __ . __ . __", {12.7f, -6.35f, 0, -6.35f}},
        {"BORDER", "__ __ . __ __ . __ __ .", {12.7f, -6.35f, 12.7f, -6.35f, 0, -6.35f}},
        {"DIVIDE", "__ . . __ . . __ . . __", {12.7f, -6.35f, 0, -6.35f, 0, -6.35f}},
    }};
    return types;
}
