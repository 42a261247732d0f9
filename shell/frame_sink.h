// CFrameSink: somebody who hears what the frame shows.
#pragma once
#include "platform/string.h"

/// A host without panes, or a test, that shows progress and prompts its own way. Set on the frame; the frame's panes show
/// them besides.
class CFrameSink {
public:
    virtual ~CFrameSink() = default;
    virtual void OnProgress(int /*percent*/) {}  // 0 to 100, as it was told
    virtual void OnProgressEnd() {}
    virtual void OnPromptText(const CString& /*line*/) {}
};
