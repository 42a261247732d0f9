// Text styles and line types: the entries that the tables of a drawing have beside layers.
#pragma once
#include <span>
#include <string>
#include <vector>

/// A text style.
struct ACAD_STYLE {
    std::string m_strName;           // UTF-8
    std::string m_strFont;           // shape font of the narrow characters, as "txt"
    std::string m_strBigFont;        // of the wide ones, as "hztxt"; empty: none
    float       m_fHeight = 0;       // 0: each text has its own
    float       m_fWidthFactor = 1;  // of every character
};

/// A line type: what is drawn and what is left out in turn.
struct DxfLineType {
    const char*        m_szName;
    const char*        m_szDescription;
    std::vector<float> m_pattern;  // millimetres on paper: above 0 a dash, below a gap, 0 a dot; empty: unbroken
};

/// The line types that every drawing is given: CONTINUOUS first, then the usual broken ones.
std::span<const DxfLineType> StandardLineTypes();
