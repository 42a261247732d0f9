// tvo edit: the editor in a window.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "host/commands.h"
#include "host/editor/document.h"
#include "host/editor/edit_frame.h"
#include "host/failure.h"
#include "host/glyphs/freetype_glyph_source.h"
#include "host/host_data_base.h"
#include "host/settings/profile_settings.h"
#include "host/settings/settings_file.h"
#include "host/window_module.h"
#include "model/profile.h"

namespace {

const char* const kAbout =
    "Opens the editor's window. FILE is a model of tvo's or a drawing (.dxf); without one a small sample\n"
    "shows. Commands are typed into the line below, chosen from the menu at the right, or given by\n"
    "function keys; files may be dropped on the window.\n"
    "\n"
    "Status: 0 when it was closed, or ended by SIGTERM or SIGINT; 1 when no window can be shown.\n"
    "Without a screen: tvo play.\n";

const char* const kRecordAbout =
    "Opens the editor as tvo edit does and writes down what is done in it: the pointer, the keys, what dialogs\n"
    "were answered, how long a drag's trial took. tvo play SCRIPT repeats it exactly, without a screen: a fault\n"
    "is best reported so. What it reads is copied to the folder SCRIPT.files, which goes with the script; files of\n"
    "more than 256 MB are only named. Each line is in the file before it is carried out, so that a crash is told to\n"
    "its last click. In the editor 记录 does the same, also afterwards, from the start of the session.\n"
    "\n"
    "Status: as that of tvo edit.\n";

constexpr const char* kUsualSize = "1200x800";

struct EditOptions {
    std::string file;
    std::string record;  // where the session is written down; empty: nowhere
    std::string size;    // of the window, WxH; empty: that of the last time
    bool measure = false;
};

/// Milliseconds since the system started this process; to a hundredth of a second.
double ProcessAge() {
    std::ifstream stat("/proc/self/stat");
    std::string text;
    std::getline(stat, text);
    const std::size_t behind = text.rfind(')');
    if (behind == std::string::npos) return 0;
    std::istringstream fields(text.substr(behind + 1));
    std::string word;
    for (int i = 3; i <= 22 && fields >> word; ++i) {
    }  // the 22nd: clock ticks after the boot
    timespec now{};
    ::clock_gettime(CLOCK_BOOTTIME, &now);
    const double ticks = std::strtod(word.c_str(), nullptr);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6 -
           ticks * 1e3 / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

/// What --measure tells at the end.
class Measure {
public:
    void FirstPicture() {
        std::printf("first picture after %.0f ms\n", ProcessAge());
        std::fflush(stdout);
    }
    void Opened() {
        std::printf("opened after %.0f ms\n", ProcessAge());
        std::fflush(stdout);
    }
    void Mouse(bool move, long long microseconds) { (move ? m_moves : m_buttons).push_back(microseconds); }
    void Tell() {
        Tell("mouse moves", m_moves);
        Tell("presses and releases", m_buttons);
    }

private:
    static void Tell(const char* what, std::vector<long long>& took) {
        if (took.empty()) return;
        std::sort(took.begin(), took.end());
        const auto at = [&](double share) {
            return static_cast<double>(
                       took[static_cast<std::size_t>(share * static_cast<double>(took.size() - 1))]) /
                   1e3;
        };
        std::printf("%zu %s shown within ms: median %.2f, 99 of 100 %.2f, all %.2f\n", took.size(), what,
                    at(0.5), at(0.99), at(1));
    }

    std::vector<long long> m_moves, m_buttons;
};

CRect PlaceOf(const std::string& size) {
    int width = 0, height = 0, end = 0;
    if (std::sscanf(size.c_str(), "%5dx%5d%n", &width, &height, &end) != 2 ||
        size[static_cast<std::size_t>(end)] || width < 1 || height < 1 || width > 16384 || height > 16384)
        throw UsageFailure("--size takes WxH in pixels, such as 1200x800, not '" + size + "'");
    return {40, 40, 40 + width, 40 + height};
}

/// As large as the last window was.
CRect LastPlace(const SettingsFile& settings) {
    try {
        return PlaceOf(settings.Read(CEditFrame::kLayoutPath, "size").value_or(kUsualSize));
    } catch (const UsageFailure&) {
        return PlaceOf(kUsualSize);
    }
}

constexpr const char* kRegPath = "TvoBase\\";  // the last view's group in the settings

int RunEditor(const EditOptions& options) {
    SettingsFile settings;  // outlives the windows, which write at their end
    const CRect place = options.size.empty() ? LastPlace(settings) : PlaceOf(options.size);
    LoadProfile(settings);
    Measure measure;
    TvoQtOptions window;
    window.m_readSetting = [&](const std::string& path, const std::string& name) {
        if (path == EditorDocument::kRecentPath) settings.Refresh();  // other windows open files too
        return settings.Read(path, name);
    };
    window.m_writeSetting = [&](const std::string& path, const std::string& name, const std::string& value) {
        settings.Write(path, name, value);
        // A crash shall cost neither what a dialog was told nor the recent files, of which the first is written last.
        const bool atTheEnd = path == CEditFrame::kLayoutPath || path.starts_with(kRegPath);
        if (!atTheEnd && (path != EditorDocument::kRecentPath || name == "File1")) settings.Save();
    };
    if (options.measure) {
        window.m_firstPicture = [&] { measure.FirstPicture(); };
        window.m_mouseShown = [&](bool move, long long microseconds) { measure.Mouse(move, microseconds); };
    }
    g_cTvoProfile.m_strRegPath = kRegPath;
    g_cTvoProfile.m_strRegSubKey = "View";
    UseSystemFonts();
    WindowModule module(window);
    int status = kDone;
    {
        CTvoHostDataBase db;
        CEditFrame frame(db);
        frame.Open(place, options.file);
        for (const std::string& message : settings.TakeMessages()) frame.Tell(message);
        frame.Document().KeepJournal();
        if (!options.record.empty()) frame.StartRecording(options.record, true);
        if (options.measure) measure.Opened();
        status = module.System().RunLoop();
    }
    SaveProfile(settings);
    measure.Tell();
    return status;
}

void AddWindowOptions(CLI::App& command, EditOptions& options) {
    command.add_option("--size", options.size, "size of the window, WxH pixels; at first 1200x800, then as it was left");
}

}  // namespace

Command AddEditCommand(CLI::App& app) {
    auto options = std::make_shared<EditOptions>();
    CLI::App* command = app.add_subcommand("edit", "Open the editor's window");
    command->add_option("FILE", options->file, "model or drawing to open");
    command->add_option("--record", options->record, "write the session down as a script for tvo play");
    AddWindowOptions(*command, *options);
    command->add_flag("--measure", options->measure, "tell how long the first picture and mouse moves took");
    command->footer(kAbout);
    return {command, [options] { return RunEditor(*options); }};
}

Command AddRecordCommand(CLI::App& app) {
    auto options = std::make_shared<EditOptions>();
    CLI::App* command = app.add_subcommand("record", "Open the editor and write the session down");
    command->add_option("SCRIPT", options->record, "the script to write; one of that name is kept as NAME~")->required();
    command->add_option("FILE", options->file, "model or drawing to open");
    AddWindowOptions(*command, *options);
    command->footer(kRecordAbout);
    return {command, [options] { return RunEditor(*options); }};
}
