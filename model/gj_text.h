// CGjText: a piece of annotation in the model.
#pragma once
#include <cstdint>

#include "model/goujian.h"
#include "platform/string.h"

/// A text component (type byte 4): one line of text at a place, with its own height, direction and colour.
/// Its display list is one text primitive, made from the fields; who changes them afterwards calls ReDraw.
///
/// A text does not store itself: a host that keeps texts writes the fields on its own.
class CGjText : public CGouJianEx {
public:
    CGjText();
    // As those of the base, a copy names the same display list.
    CGjText(const CGjText&) = default;
    CGjText& operator=(const CGjText&) = default;

    int IsPhysicalGouJian() override { return 1; }
    /// What its display list covers: the box of the letters.
    CFRect GetFrect() override;
    void OnCalcParameters() override {}
    CFPoint GetCentroid() override { return {m_fX, m_fY, 0}; }
    int DrawGraph(CDrawGraph* g) override;
    /// A selected text is shown in a darker shade of its own colour, not in the colour of selections.
    void GetDrawInfo(unsigned char status, char part, unsigned long& colour, int& lineType) override;
    int QueryBasicType() override { return kBasicText; }
    // Nothing is written or read, and that counts as done.
    int SaveData(std::FILE*) override { return 1; }
    int LoadData(std::FILE*) override { return 1; }
    int WriteBinary(std::FILE*) override { return 1; }
    int ReadBinary(std::FILE*) override { return 1; }
    CFPoint GetSortPoint() override { return {m_fX, m_fY, 0}; }

    float m_fX = 0, m_fY = 0;    // insertion point: lower left corner of the letters' box
    float m_fHeight = 300.0f;    // model units
    float m_fAngle = 0;          // direction of reading, radians, anticlockwise from the x axis
    CString m_strText;           // the text
    std::uint32_t m_crColor;     // COLORREF; the profile's text colour at construction
    std::int32_t m_nUnused = 0;  // no use in the library
};
