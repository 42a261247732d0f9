// Lines of equal value through triangles. Internal.
#pragma once
#include "fields/chang.h"

class CFieldMesh;

/// Traces one level, as CChang::TraceOne tells.
void TraceIsoline(const CChang& field, const CFieldMesh& mesh, float level, CArray<CArray<CFPoint>>& lines);
