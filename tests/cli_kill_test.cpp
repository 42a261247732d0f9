// The whole editor killed at each single operation on the disk and at each event of a drag: what comes back
// is the model after the last step that was written whole.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tvo_process.h"

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t kStride = 3;  // a process takes long to start
#else
constexpr std::size_t kStride = 1;
#endif

std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

/// A step goes into the journal with one write under its own name; when a journal begins, its file has
/// another.
bool IsStep(const std::string& operation, const char* call) {
    return operation.starts_with(std::string(call) + " .") && operation.ends_with("-journal");
}

struct KillPoint {
    std::size_t at = 0;  // 0: never
    const char* how = "";
};

class Kill : public testing::Test {
protected:
    Kill() {
        ::signal(SIGPIPE, SIG_IGN);  // of an editor that is dead before it has heard all
        ::setenv("XDG_STATE_HOME", m_beside.File("state").c_str(), 1);
        if (!RunTvo({"run"}, "line 0 0 12000 0\nsave house.tvo\n", m_beside.Path()).status)
            m_house = ReadWholeFile(m_beside.File("house.tvo"));
        // From here on for whatever is run.
        ::setenv("TVO_KILL_FOLDER", m_folder.File("").c_str(), 1);
        ::setenv("TVO_KILL_LOG", m_beside.File("log").c_str(), 1);
        ::setenv("ASAN_OPTIONS", "verify_asan_link_order=0", 1);
        ::setenv("LD_PRELOAD", TVO_KILL_POINT, 1);
    }
    ~Kill() override {
        Release();
        ::signal(SIGPIPE, SIG_DFL);
        for (const char* name :
             {"XDG_STATE_HOME", "TVO_KILL_FOLDER", "TVO_KILL_LOG", "ASAN_OPTIONS", "LD_PRELOAD"})
            ::unsetenv(name);
    }

    /// A fresh folder with the model, and the editor on it with a hand at its input.
    void Start(KillPoint point) {
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.Path()))
            std::filesystem::remove_all(entry);
        m_folder.Write("house.tvo", m_house);
        std::filesystem::remove(m_beside.File("log"));
        int in[2], out[2];
        ASSERT_EQ(::pipe2(in, O_CLOEXEC), 0);
        ASSERT_EQ(::pipe2(out, O_CLOEXEC), 0);
        m_process = ::fork();
        if (m_process == 0) {
            ::signal(SIGPIPE, SIG_DFL);
            ::dup2(in[0], STDIN_FILENO);
            ::dup2(out[1], STDOUT_FILENO);
            ::setenv("TVO_KILL_AT", std::to_string(point.at).c_str(), 1);
            ::setenv("TVO_KILL_HOW", point.how, 1);
            ::execl(TVO_PROGRAM, TVO_PROGRAM, "play", static_cast<char*>(nullptr));
            ::_exit(127);
        }
        ::close(in[0]);
        ::close(out[1]);
        m_in = in[1];
        m_out = out[0];
        Send("editor 800 600 " + m_folder.File("house.tvo") + "\njournal");
    }
    void Send(const std::string& line) { (void)!::write(m_in, (line + "\n").data(), line.size() + 1); }
    bool Hear(std::string& said) const {  // false at the end
        char piece[4096];
        const ssize_t n = ::read(m_out, piece, sizeof piece);
        if (n > 0) said.append(piece, static_cast<std::size_t>(n));
        return n > 0;
    }
    /// What the editor says up to the answer to this.
    std::string Ask(const std::string& line) {
        Send(line + "\nstat");
        std::string said;
        while (Hear(said)) {
            const std::size_t stat = said.find("{\"type\":\"stat\"");
            if (said.back() == '\n' && stat != std::string::npos) return said.substr(0, stat);
        }
        return said + "nothing more";
    }
    /// Waits for its end; the status as the system gives it.
    int End() {
        ::close(m_in);
        for (std::string rest; Hear(rest);) {
        }
        ::close(m_out);
        int status = -1;
        ::waitpid(std::exchange(m_process, 0), &status, 0);
        return status;
    }
    void Release() {
        if (m_process > 0) ::kill(m_process, SIGKILL), End();
    }
    std::vector<std::string> Operations() const { return LinesOf(ReadWholeFile(m_beside.File("log"))); }
    std::size_t Steps(const char* call = "write") const {
        const auto all = Operations();
        return static_cast<std::size_t>(
            std::count_if(all.begin(), all.end(), [&](const auto& o) { return IsStep(o, call); }));
    }

    /// Plays it to the end: m_states becomes the model behind each step that went to the disk.
    void Watch(const std::vector<std::string>& session) {
        Start({});
        m_states = {Ask("dump")};
        for (const std::string& line : session) {
            const std::string now = Ask(line + "\ndump");
            const std::size_t steps = Steps();
            ASSERT_LE(steps, m_states.size()) << "more than one step: " << line;
            if (steps == m_states.size()) m_states.push_back(now);
            ASSERT_EQ(m_states.back(), now) << "not journalled: " << line;
        }
        ASSERT_EQ(Steps("fdatasync"), Steps());
        m_operations = Operations();
        Release();
    }

    bool Exists(const char* name) const { return std::filesystem::exists(m_folder.File(name)); }
    /// Opens what is there as the user would after the crash, and goes on.
    std::string Recovered(const char* name) {
        const TvoRun run = RunTvo({"play"}, "editor 800 600 " + m_folder.File(name) +
                                                "\nanswer recover 0\njournal\ndump\ntype Save \npath " +
                                                m_folder.File("other.tvo") + "\ntype SaveAs \nclose\n");
        EXPECT_EQ(run.err, "");
        const std::size_t end = run.out.find("{\"type\":\"close\",\"closed\":true}");
        return end == std::string::npos ? "not closed: " + run.out : run.out.substr(0, end);
    }

    const ScratchFolder m_folder, m_beside;
    std::string m_house;
    std::vector<std::string> m_states, m_operations;
    pid_t m_process = 0;
    int m_in = -1, m_out = -1;
};

/// Steps of every kind, three saves, the last of them under another name.
std::vector<std::string> Edits(const std::string& other) {
    std::vector<std::string> edits;
    for (const char* line : {"Line 0,1000 0,9000 ", "Rect 0,2000 6000,6000 ", "FormPlates ", "Save ",
                             "Line 3000,2000 3000,6000 ", "u ", "redo ", "Circle 9000,4000 @1000<0 ", "Save ",
                             "PLine 0,9000 9000,9000 ", "9000,5000 ", "c ", "FormPlates "})
        edits.push_back(std::string("type ") + line);
    edits.push_back("path " + other);
    for (const char* line : {"SaveAs ", "Line 1000,0 1000,9000 ", "u "})
        edits.push_back(std::string("type ") + line);
    return edits;
}

}  // namespace

TEST_F(Kill, AtEachOperationOnTheDisk) {
    const auto session = Edits(m_folder.File("other.tvo"));
    ASSERT_NO_FATAL_FAILURE(Watch(session));
    ASSERT_TRUE(Exists("other.tvo"));
    std::vector<KillPoint> points;
    for (std::size_t at = 1; at <= m_operations.size(); ++at) {
        const std::string& operation = m_operations[at - 1];
        const auto is = [&](const char* call) { return operation.starts_with(call); };
        const bool syncs = is("fsync") || is("fdatasync");
        if (IsStep(operation, "write") || syncs || is("link") || is("unlink ."))
            points.push_back({at, "before"});
        if (is("write")) points.push_back({at, "half"});
        if (syncs || is("rename")) points.push_back({at, "power"});
    }
    const std::set<std::string> rest{"house.tvo", "house.tvo~", "other.tvo", "other.tvo~"};
    int steps = 0, saves = 0;
    for (std::size_t i = 0; i < points.size(); i += kStride) {
        const std::string& operation = m_operations[points[i].at - 1];
        SCOPED_TRACE(std::to_string(points[i].at) + ": " + points[i].how + " " + operation);
        ASSERT_NO_FATAL_FAILURE(Start(points[i]));
        for (const std::string& line : session) Send(line);
        const int status = End();
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << status;
        const std::size_t whole = Steps(points[i].how == std::string("power") ? "fdatasync" : "write");
        ASSERT_LT(whole, m_states.size());
        ASSERT_EQ(Recovered(Exists("other.tvo") ? "other.tvo" : "house.tvo"), m_states[whole]);
        if (Exists(".house.tvo-journal")) {  // it was saved under the new name already
            ASSERT_EQ(Recovered("house.tvo"), m_states[whole]);
        }
        ++(IsStep(operation, "write") || IsStep(operation, "fdatasync") ? steps : saves);
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.Path()))
            ASSERT_TRUE(rest.count(entry.path().filename())) << entry.path();
    }
    std::printf("%d deaths about a step, %d about a save\n", steps, saves);
    EXPECT_GE(steps * kStride, 50u);
    EXPECT_GE(saves * kStride, 50u);
}

// Each time at one event later: half of them while it is being handled, half of them when it has been.
TEST_F(Kill, AtEachEventOfADrag) {
    std::vector<std::string> session;
    const auto drag = [&](int x, int y) {
        for (int i = 1; i <= 4; ++i)
            session.push_back("move " + std::to_string(x + 11 * i) + " " + std::to_string(y + 7 * i));
    };
    const auto click = [&](int x, int y) {
        const std::string place = std::to_string(x) + " " + std::to_string(y);
        session.insert(session.end(), {"ldown " + place, "lup " + place});
    };
    for (const char* command : {"type Line ", "type PLine ", "type Rect ", "type Circle ", "type Arc "}) {
        session.push_back(command);
        const int x = 100 + static_cast<int>(session.size()) * 4;
        for (int i = 0; i < 3; ++i) {
            click(x + 60 * i, 100 + 50 * i * (3 - i));
            drag(x + 60 * i, 120);
            if (i != 1) continue;
            session.push_back("mdown 300 300");  // the view is moved while the line hangs at the pointer
            drag(300, 300);
            session.push_back("mup 350 330");
        }
        session.push_back("esc");
    }
    session.insert(session.end(), {"type Erase ", "ldown 20 20"});
    drag(600, 500);
    session.insert(session.end(), {"ldown 700 550", "rdown", "rup"});
    ASSERT_NO_FATAL_FAILURE(Watch(session));
    ASSERT_GT(m_states.size(), 6u);

    int deaths = 0;
    std::set<std::string> seen;
    for (std::size_t last = 1; last < session.size(); last += 2 * kStride) {
        const bool handled = last / 2 % 2 != 0;
        if (session[last].starts_with("type") || session[last] == "esc") continue;
        SCOPED_TRACE(std::to_string(last) + ": " + session[last]);
        ASSERT_NO_FATAL_FAILURE(Start({}));
        for (std::size_t i = 0; i + 1 < last; ++i) Send(session[i]);
        Ask(session[last - 1]);
        if (handled) Ask(session[last]);
        else Send(session[last]), ::usleep(static_cast<useconds_t>(last * 37 % 300));
        ::kill(m_process, SIGKILL);
        End();
        const std::size_t whole = Steps();
        ASSERT_LT(whole, m_states.size());
        const std::string came = Recovered("house.tvo");
        // The write may have been under way, and be told no more.
        ASSERT_TRUE(came == m_states[whole] ||
                    (!handled && came == m_states[std::min(whole + 1, m_states.size() - 1)]))
            << whole << " steps written, but there came\n"
            << came;
        seen.insert(came);
        ++deaths;
    }
    std::printf("%d deaths, %zu models\n", deaths, seen.size());
    EXPECT_GE(deaths * kStride, 50u);
}
