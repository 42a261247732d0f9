// CTvoProile: the process-wide display and editing settings.
#pragma once
#include <cstdint>
#include <cstdio>

#include "platform/string.h"

/// The settings that components, net and view read. One object serves the process: g_cTvoProfile. A host that
/// keeps settings between sessions reads and writes the fields itself; SaveData and LoadData do nothing.
/// Colours are 0x00BBGGRR; colour indices go through GetAcadRGBColor.
class CTvoProile {
public:
    CTvoProile() = default;
    CTvoProile(const CTvoProile&) = default;
    CTvoProile& operator=(const CTvoProile&) = default;
    virtual ~CTvoProile() = default;

    void SaveData(std::FILE*) {}
    void LoadData(std::FILE*) {}

    std::uint32_t m_crBackground = 0;      // view background
    std::uint32_t m_crRubber = 0xFFFF00;   // rubber lines
    std::uint32_t m_crSnap = 0x00FFFF;     // snap symbol
    std::uint32_t m_crGrid = 0xC0C0C0;     // background grid
    int m_nSymbolSize = 17;                // snap symbol, pixels
    int m_nUnused1 = 1;                    // read by nothing
    int m_nNodeColor = 7;                  // a node
    int m_nSelNodeColor = 4;               // a selected node; a selected field
    int m_nNetTolerance = 50;              // position tolerance of the net, model units
    int m_nUnused2 = 10;                   // read by nothing
    int m_nUnused3 = 500;                  // read by nothing
    int m_nLineColor = 16;                 // a net line, part 'A'
    int m_nSelLineColor = 4;               // a selected net line
    int m_bShowLineDirection = 1;          // net lines draw a direction arrow
    int m_nLineColorOther = 1;             // a net line, any other part
    int m_nTextColor = 3;                  // default of texts
    int m_nUnused4 = 86;                   // read by nothing
    double m_dDisplayDivisor = 1.0;        // of coordinates on the status bar
    float m_fKbdStepMin = 100.0f;          // range of the keyboard step, model units
    float m_fKbdStepMax = 100000.0f;
    float m_fTextHeightMin = 100.0f;       // range of text heights, model units
    float m_fTextHeightMax = 5000.01f;
    CString m_strWelcome = "澄岳前处理欢迎您!";  // first text of the prompt view
    int m_nMutedColor = 250;               // drawing state 3
    CString m_strRegPath;                  // where the last view is stored; empty: nowhere
    CString m_strRegSubKey;
};

extern CTvoProile g_cTvoProfile;
