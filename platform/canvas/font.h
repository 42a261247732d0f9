// CFont: the choice of a face, height and direction for text.
#pragma once
#include "platform/canvas/gdi_object.h"
#include "platform/string.h"

/// A font by description; the shapes come from the process's glyph source when text is drawn.
class CFont : public CGdiObject {
public:
    CFont() = default;

    BOOL CreateFont(int height, int width, int escapement, int orientation, int weight, int italic,
                    int underline, int strikeOut, int charSet, int outPrecision, int clipPrecision,
                    int quality, int pitchAndFamily, const char* face);
    BOOL CreateFontIndirect(const LOGFONT* font);
    BOOL CreatePointFont(int tenthsOfPoint, const char* face, CDC* dc = nullptr);  // at 96 dots an inch
    BOOL CreateStockObject(int index) override;

    int GetLogFont(LOGFONT* font) const;
    const LOGFONT& Log() const { return m_log; }

protected:
    void Reset() override { m_log = LOGFONT{}; }

private:
    LOGFONT m_log;
};
