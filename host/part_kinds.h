// The kinds of components by the names that scripts and reports call them.
#pragma once
#include <array>

#include "host/tvo_load.h"
#include "host/tvo_rider.h"
#include "model/goujian_type.h"

struct PartKind {
    const char* one;   // in JSON
    const char* many;  // in commands
    unsigned char type;
};

/// In the order in which a dump tells them.
inline constexpr std::array kPartKinds{
    PartKind{"node", "nodes", GJLX_NET_NODE},   PartKind{"line", "lines", GJLX_NET_LINE},
    PartKind{"plate", "plates", GJLX_MIAN},     PartKind{"load", "loads", kTvoLoadType},
    PartKind{"text", "texts", GJLX_TEXT},       PartKind{"field", "fields", GJLX_CHANG},
    PartKind{"point", "points", GJLX_POINT},    PartKind{"pline", "plines", GJLX_LINE},
    PartKind{"arc", "arcs", GJLX_ARC},          PartKind{"circle", "circles", GJLX_CIRCLE},
    PartKind{"disc", "discs", GJLX_CIRCLE_RGN}, PartKind{"polygon", "polygons", GJLX_POLYGON_RGN},
    PartKind{"rider", "riders", kTvoRiderType},
};

/// Those that model files keep in sections of their own by type byte: all but nodes, lines, plates and
/// fields.
inline bool HasOwnSections(const PartKind& kind) { return kind.type > GJLX_MIAN && kind.type != GJLX_CHANG; }

/// Null for a type byte without a name.
inline const PartKind* FindPartKind(unsigned char type) {
    for (const PartKind& kind : kPartKinds)
        if (kind.type == type) return &kind;
    return nullptr;
}
