// The groups of a DXF file: pairs of a code and a value. Internal.
#pragma once
#include <cstdint>
#include <memory>
#include <string_view>

class DxfByteSource;

/// Walks the groups of a file, text or binary, through a window of fixed size. The current group's text is
/// a view into the window and ends with the next call. Comments (code 999) are passed over.
class DxfTagScanner {
public:
    explicit DxfTagScanner(DxfByteSource& source);

    /// Goes to the first group, which must have code 0 in every drawing; false if it isn't there.
    bool Start();
    /// Goes to the next group. False at the end, and for good: see WasCut.
    bool Next() { return m_bBinary ? NextBinary() : NextText(true); }
    /// Goes to the next group of code 0, reading no numbers on the way.
    bool NextZero();

    int Code() const { return m_nCode; }
    bool Is(int code, std::string_view word) const { return m_nCode == code && Word() == word; }
    std::string_view Text() const { return m_text; }  // as it stands in the file
    std::string_view Word() const;                    // without blanks around it
    int Integer() const;
    /// Whether the group holds a number of the kind that Real gives: codes 10..59, 140..149, 210..239.
    bool IsReal() const { return m_bReal; }
    double Real() const { return m_dReal; }           // NaN if the text is no number
    bool IsNumber() const { return m_bNumber; }

    bool IsBinary() const { return m_bBinary; }
    std::uint64_t Line() const { return m_bBinary ? 0 : m_nLine; }  // of the current group's code, from 1
    std::uint64_t Byte() const { return m_nBase + static_cast<std::uint64_t>(m_pTag - m_window.get()); }

    /// After the end: why it came before the file was whole; null if the last group was whole.
    const char* WasCut() const { return m_szCut; }
    /// Lines that stand in the place of a group code and are none: passed over, since one line too many
    /// (a text with a line break in it) then does no more harm.
    std::uint64_t BadLines() const { return m_nBadLines; }
    std::uint64_t FirstBadLine() const { return m_nFirstBadLine; }

private:
    bool NextText(bool readReals);
    bool NextBinary();
    bool TakeTextValue(const char* from, const char* to, bool readReals);
    bool PassBadLine();
    bool EndOfText(const char* value);
    bool PassLongValue(char terminator);
    bool Refill();
    bool Need(std::size_t bytes);
    bool TakeBinaryText();
    bool Cut(const char* reason);
    template <class T>
    T Take();

    DxfByteSource&          m_source;
    std::unique_ptr<char[]> m_window;
    const char*             m_p;           // next byte
    char*                   m_pEnd;        // behind the last byte read; line ends stand behind it as stops
    const char*             m_pTag;        // where the current group begins
    std::uint64_t           m_nBase = 0;   // place of the window in the file
    std::uint64_t           m_nLine = 1;   // of the current group
    std::uint64_t           m_nNextLine = 1;
    std::uint64_t           m_nBadLines = 0;
    std::uint64_t           m_nFirstBadLine = 0;
    const char*             m_szCut = nullptr;
    std::string_view        m_text;
    double                  m_dReal = 0;
    std::int64_t            m_nInteger = 0;
    int                     m_nCode = 0;
    bool                    m_bReal = false;
    bool                    m_bNumber = true;
    bool                    m_bBinary = false;
    bool                    m_bShortCodes = false;  // binary of R12 and before: codes of one byte
    bool                    m_bStarted = false;
    bool                    m_bPassRest = false;    // the current value goes on beyond the window
    bool                    m_bEnd = false;         // the source has no more
};
