// EditorDocument: the file behind the model that the editor shows.
#pragma once
#include <string>
#include <vector>

#include "host/models/file_system.h"
#include "host/models/model_journal.h"

class CEditFrame;
struct JournalLeftover;

/// Opens and saves the model of a frame and asks the user what has to be asked. Whatever fails is told with
/// file and reason, and the model stands as it was. Files are replaced whole; the one before is kept as
/// NAME~.
class EditorDocument {
public:
    explicit EditorDocument(CEditFrame& frame) : m_frame(frame) {}

    // --- the journal, which outlives a crash; none is kept before KeepJournal
    /// Keeps one from now on. Offers what a crash has left: of the model that stands, or without a file of
    /// any.
    void KeepJournal();
    /// Writes what has changed and tells what went wrong. To be called after each event.
    void FlushJournal();
    void CloseJournal();  // the session ends in good order

    // --- what the user asks for; nothing happens if he cancels
    void New() { StartEmpty(); }
    /// A new empty model, asking first. False: this one stays.
    bool StartEmpty();
    void AskOpen();
    void AskRecent();
    /// Asks first when somebody else has written the file in between. False: not saved.
    bool Save();
    bool SaveAs();
    /// Before the model goes: asks whether to save it if that is needed. False: it stays.
    bool MayLeave();
    /// Opens a model in the place of this one, asking first, or imports a drawing into it.
    bool OpenAsked(const std::string& path);
    bool ImportAsked(const std::string& path);  // a drawing, whatever its name ends in

    // --- without asking
    bool Open(const std::string& path);  // a model, or a drawing by its ending .dxf
    void ShowSample();                   // a small building without a file

    /// Saving goes there from here on, or asks if it is empty; for sessions that are played.
    void TakeName(const std::string& path) { m_path = path, m_stamp = {}; }
    const std::string& Path() const { return m_path; }  // empty: it has no file yet
    bool IsModified() const;
    std::string Title() const;  // "NAME[*] - TvoBase"
    /// Files that were opened or saved, the last one first, at most kMostRecent. Kept in the settings.
    static std::vector<std::string> Recent();
    static constexpr std::size_t kMostRecent = 10;
    static constexpr const char* kRecentPath = "Recent";  // their group in the settings: File1, File2, ...

private:
    void BeginJournal(bool unsaved, const std::string& broughtBack = {});
    bool Recover(const JournalLeftover& leftover);
    bool OfferOf(const std::string& path);
    void OfferLeftovers();
    bool CanRead(const std::string& path);
    bool OpenModelFile(const std::string& path);
    bool SaveTo(const std::string& path);
    void TakeFile(const std::string& path);
    std::string Name() const;

    CEditFrame& m_frame;  // borrowed, owns this
    std::string m_path;   // absolute
    FileStamp m_stamp{};  // of the file as this session knows it; zero: it doesn't
    ModelJournal m_journal;
    bool m_keeping = false;  // a journal
};

/// Is this the name of a drawing?
bool IsDrawingName(const std::string& path);
/// The reason why a file can't be read, in Chinese; empty when it can.
std::string WhyUnreadable(const std::string& path);
