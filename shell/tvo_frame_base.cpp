#include "shell/tvo_frame_base.h"

CTvoFrameBase* g_pFrame = nullptr;

CTvoFrameBase::CTvoFrameBase() { g_pFrame = this; }
CTvoFrameBase::~CTvoFrameBase() {
    if (g_pFrame == this) g_pFrame = nullptr;
}
