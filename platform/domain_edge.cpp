#include "platform/domain_edge.h"

#include "geometry/fregion.h"

void ChangeToEdge(const CFRegion& region, CDomainEdge* edges) {
    for (int i = 0; i < region.GetSize(); ++i) {
        const CFShoot& from = region[i];
        const CFShape piece(from, region[i + 1 < region.GetSize() ? i + 1 : 0], from.c);
        CDomainEdge edge;
        edge.start_x = from.x;
        edge.start_y = from.y;
        if (!piece.IsPoint() && !piece.IsLine()) {
            edge.type = 1;
            edge.center_x = piece.x;
            edge.center_y = piece.y;
            edge.direction = from.c < 0;
        }
        edges[i] = edge;
    }
}
