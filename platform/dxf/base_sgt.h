// The drawing writer.
#pragma once
#include "platform/dxf/dxf.h"

/// A drawing that can be drawn into.
class CBase_SGT : public DXF {
public:
    CBase_SGT() = default;
};
