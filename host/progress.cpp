#include "host/progress.h"

#include <unistd.h>

#include <cstdio>

CTerminalProgress::CTerminalProgress(const char* label, CTvoFrameBase* before)
    : m_label(label), m_before(before), m_terminal(::isatty(STDERR_FILENO) == 1), m_start(std::chrono::steady_clock::now()) {
    m_pSink = this;
}

CTerminalProgress::~CTerminalProgress() {
    Finish();
    g_pFrame = m_before;
}

void CTerminalProgress::Finish() {
    if (m_shown >= 0 && InWindow()) m_before->ShutDownProgress();
    else if (m_shown >= 0) std::fputs("\r\033[K", stderr);
    m_shown = -1;
}

void CTerminalProgress::OnProgress(int percent) {
    if ((!m_terminal && !InWindow()) || percent == m_shown) return;
    if (std::chrono::steady_clock::now() - m_start < std::chrono::milliseconds(500)) return;
    m_shown = percent;
    if (InWindow()) return m_before->ShowProgress(percent);
    std::fprintf(stderr, "\r%s %d %%", m_label, percent);
    std::fflush(stderr);
}
