#include "model/graph_entity.h"

#include "geometry/frect.h"
#include "geometry/fregion.h"

int CGraphEntity::HitTest(const CFRegion&, int) { return 0; }
int CGraphEntity::HitTest(const CFRect& rect, int mode) { return HitTest(CFRegion(rect), mode); }
CFRect CGraphEntity::GetFrect() { return {}; }
void CGraphEntity::QueryAbsSnapPoint(unsigned int, CArray<CFPoint>&, CArray<int>&) {}
