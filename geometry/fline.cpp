#include "geometry/fline.h"

#include <cmath>

#include "geometry/angles.h"

int IsSameFPLine(const CFPLine& a, const CFPLine& b, float tol) {
    return get_dist(a.m_cStart.x, a.m_cStart.y, b.m_cStart.x, b.m_cStart.y) < tol &&
           get_dist(a.m_cEnd.x, a.m_cEnd.y, b.m_cEnd.x, b.m_cEnd.y) < tol;
}

int IsSameFPArc(const CFPArc& a, const CFPArc& b, float tol) {
    return get_dist(a.m_fCenterX, a.m_fCenterY, b.m_fCenterX, b.m_fCenterY) < tol &&
           std::fabs(a.m_fR - b.m_fR) < tol && std::fabs(a.m_fStartAngle - b.m_fStartAngle) < tol &&
           std::fabs(a.m_fEndAngle - b.m_fEndAngle) < tol;
}

void DisplayFPLineArray(CArray<CFPLine, CFPLine&>* lines) {
    for (int i = 0; lines && i < lines->GetSize(); ++i) [[maybe_unused]] const CFPLine line = lines->GetAt(i);
}

void DisplayFPArcArray(CArray<CFPArc, CFPArc&>* arcs) {
    for (int i = 0; arcs && i < arcs->GetSize(); ++i) [[maybe_unused]] const CFPArc arc = arcs->GetAt(i);
}
