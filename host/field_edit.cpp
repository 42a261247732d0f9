#include "host/field_edit.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <vector>

#include "fields/chang.h"
#include "fields/field_mesh.h"
#include "fields/gj_chang.h"
#include "fields/mesh_densify.h"
#include "host/host_data_base.h"

namespace {

/// Densifying numbers its new nodes upwards from the greatest corner, so that nodes which are nobody's corner
/// and bear such numbers, of a mesh's quadrangles for one, would stand in for them; and numbers end.
bool HasRoomToDensify(const CChang& field) {
    int corner = 0;
    for (const CChangTri& tri : field.m_arrTri)
        corner = std::max({corner, tri.m_aNode[0], tri.m_aNode[1], tri.m_aNode[2]});
    if (std::int64_t{corner} + 1 + 3 * std::int64_t{field.m_arrTri.GetSize()} >
        std::numeric_limits<int>::max())
        return false;
    return field.m_arrNode.GetSize() <= corner &&
           std::none_of(field.m_arrNode.begin(), field.m_arrNode.end(),
                        [&](const CChangNode& node) { return node.m_nNumber > corner; });
}

/// The field with nodes numbered from 1, those that are nobody's corner first, and without the triangles that
/// lack a corner.
void NumberAnew(const CChang& field, CChang& fresh) {
    CFieldMesh mesh(field);
    mesh.Refresh();
    const auto whole = [&](const CChangTri& tri) {
        return std::all_of(std::begin(tri.m_aNode), std::end(tri.m_aNode),
                           [&](int number) { return mesh.PositionOf(number) >= 0; });
    };
    std::vector<bool> isCorner(static_cast<std::size_t>(field.m_arrNode.GetSize()));
    for (const CChangTri& tri : field.m_arrTri)
        if (whole(tri))
            for (const int number : tri.m_aNode)
                isCorner[static_cast<std::size_t>(mesh.PositionOf(number))] = true;
    std::vector<int> numbers(isCorner.size());
    for (const bool corners : {false, true})
        for (std::size_t i = 0; i < isCorner.size(); ++i) {
            if (isCorner[i] != corners) continue;
            fresh.m_arrNode.Add(field.m_arrNode[static_cast<int>(i)]);
            numbers[i] = fresh.m_arrNode[fresh.m_arrNode.GetUpperBound()].m_nNumber =
                fresh.m_arrNode.GetSize();
        }
    const auto renamed = [&](int number) {
        return numbers[static_cast<std::size_t>(mesh.PositionOf(number))];
    };
    for (const CChangTri& tri : field.m_arrTri)
        if (whole(tri))
            fresh.m_arrTri.Add({{renamed(tri.m_aNode[0]), renamed(tri.m_aNode[1]), renamed(tri.m_aNode[2])}});
}

}  // namespace

CGjChang* AddField(CTvoHostDataBase& db, std::unique_ptr<CChang> chang, std::uint32_t tag,
                   const FieldLook& look, unsigned char status) {
    CGjChang* field =
        db.DrawChang(chang.get(), look.scheme, tag, look.display, look.scale, look.mesh, look.values, status);
    chang.release();  // the component's, which deletes it
    field->m_bOwnChang = 1;
    return field;
}

std::uint32_t NextFieldTag(CTvoHostDataBase& db) {
    return static_cast<std::uint32_t>(db.GetNextTagID(GJLX_CHANG));
}

CGjChang* DensifyField(CTvoHostDataBase& db, CGjChang* field) {
    const CChang& coarse = *field->m_pChang;
    if (coarse.m_arrTri.GetSize() > kMostFieldTriangles / 4) return nullptr;
    auto fine = std::make_unique<CChang>();
    CChang fresh;
    const bool hasRoom = HasRoomToDensify(coarse);
    if (!hasRoom) NumberAnew(coarse, fresh);
    wange_ge_jia_mi(hasRoom ? field->m_pChang : &fresh, fine.get());
    fine->m_nValue = coarse.m_nValue;
    const FieldLook look{field->m_nColorScheme, field->m_nDisplay, field->m_fValueScale, field->m_bDrawGrid,
                         field->m_bDrawValue};
    const std::uint32_t tag = field->m_dwTag;
    const unsigned char status = field->get_m_byteStatus();
    db.DeleteGouJian(field);
    return AddField(db, std::move(fine), tag, look, status);
}
