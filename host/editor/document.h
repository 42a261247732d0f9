// EditorDocument: the file behind the model that the editor shows.
#pragma once
#include <string>
#include <vector>

class CEditFrame;

/// Opens and saves the model of a frame and asks the user what has to be asked. Whatever fails is told with file and
/// reason, and the model stands as it was. Files are replaced whole; the one before is kept as NAME~.
class EditorDocument {
public:
    explicit EditorDocument(CEditFrame& frame) : m_frame(frame) {}

    // --- what the user asks for; nothing happens if he cancels
    void New() { StartEmpty(); }
    /// A new empty model, asking first. False: this one stays.
    bool StartEmpty();
    void AskOpen();
    void AskRecent();
    bool Save();  // false: not saved
    bool SaveAs();
    /// Before the model goes: asks whether to save it if that is needed. False: it stays.
    bool MayLeave();
    /// Opens a model in the place of this one, asking first, or imports a drawing into it.
    bool OpenAsked(const std::string& path);
    bool ImportAsked(const std::string& path);  // a drawing, whatever its name ends in

    // --- without asking
    bool Open(const std::string& path);  // a model, or a drawing by its ending .dxf
    void ShowSample();                   // a small building without a file

    const std::string& Path() const { return m_path; }  // empty: it has no file yet
    bool IsModified() const;
    std::string Title() const;  // "NAME[*] - TvoBase"
    /// Files that were opened or saved, the last one first, at most kMostRecent. Kept in the settings.
    static std::vector<std::string> Recent();
    static constexpr std::size_t kMostRecent = 10;

private:
    bool CanRead(const std::string& path);
    bool OpenModelFile(const std::string& path);
    bool SaveTo(const std::string& path);
    void Remember(const std::string& path);
    std::string Name() const;

    CEditFrame& m_frame;  // borrowed, owns this
    std::string m_path;   // absolute
};

/// Is this the name of a drawing?
bool IsDrawingName(const std::string& path);
/// The reason why a file can't be read, in Chinese; empty when it can.
std::string WhyUnreadable(const std::string& path);
/// The reason at the end of a failure's message, in Chinese where it is one of the system's.
std::string ReasonInChinese(const std::string& message, const std::string& path);
