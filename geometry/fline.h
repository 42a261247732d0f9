// CFPLine and CFPArc: exchange records of a straight and a circular piece.
#pragma once
#include "geometry/fpoint.h"
#include "platform/containers.h"

/// A straight piece from start to end.
class CFPLine {
public:
    CFPLine() = default;
    CFPLine(const CFPoint& start, const CFPoint& end) : m_cStart(start), m_cEnd(end) {}
    CFPLine(const CFPLine&) = default;
    CFPLine& operator=(const CFPLine&) = default;
    virtual ~CFPLine() = default;

    CFPoint m_cStart;
    CFPoint m_cEnd;
};

/// A circular piece, anticlockwise from the start angle to the end angle. Angles are degrees.
class CFPArc {
public:
    CFPArc() = default;
    CFPArc(float cx, float cy, float r, float start, float end)
        : m_fCenterX(cx), m_fCenterY(cy), m_fR(r), m_fStartAngle(start), m_fEndAngle(end) {}
    CFPArc(const CFPArc&) = default;
    CFPArc& operator=(const CFPArc&) = default;
    virtual ~CFPArc() = default;

    float m_fCenterX = 0;
    float m_fCenterY = 0;
    float m_fR = 0;           // radius
    float m_fStartAngle = 0;  // degrees
    float m_fEndAngle = 0;    // degrees
};

/// True when start lies at start and end at end, each strictly nearer than tol. A reversed line is another.
int IsSameFPLine(const CFPLine& a, const CFPLine& b, float tol);
/// True when centres, radii and both angles each differ by strictly less than tol: the one tol is a length
/// and a number of degrees.
int IsSameFPArc(const CFPArc& a, const CFPArc& b, float tol);

/// Hooks for a debugger: walk the array, copying each element, and do nothing more.
void DisplayFPLineArray(CArray<CFPLine, CFPLine&>* lines);
void DisplayFPArcArray(CArray<CFPArc, CFPArc&>* arcs);
