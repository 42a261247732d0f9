// Reads the #include lines of the sources and keeps the direction of dependencies true.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;

/// What a folder may include beside itself. platform/ is under all and knows geometry's value types alone.
const std::map<std::string, std::set<std::string>> kMayInclude = {
    {"platform", {"geometry"}},
    {"geometry", {"platform"}},
    {"model", {"geometry", "platform"}},
    {"net", {"model", "geometry", "platform"}},
    {"plates", {"net", "model", "geometry", "platform"}},
    {"fields", {"net", "model", "geometry", "platform"}},
    {"view", {"fields", "plates", "net", "model", "geometry", "platform"}},
    {"controls", {"view", "fields", "plates", "net", "model", "geometry", "platform"}},
    {"shell", {"controls", "view", "fields", "plates", "net", "model", "geometry", "platform"}},
};

/// Includes against that direction which the design forces.
const std::set<std::pair<std::string, std::string>> kExceptions = {
    // The data base holds the background grid by value.
    {"model/tvo_data_base.h", "fields/backgrnd.h"},
};

/// Sources that call upward: they tell the view or the frame, if there is one, what changed or how far they are.
const std::set<std::string> kMayCallView = {
    "fields/dxf_import.cpp",           "fields/gj_chang_picture.cpp",      "model/dxf_export.cpp",
    "model/goujian_display.cpp",       "model/goujian_grid.cpp",
    "model/tvo_data_base.cpp",         "model/tvo_data_base_drawing.cpp",  "model/tvo_data_base_index.cpp",
    "model/tvo_data_base_query.cpp",   "net/net_line_object.cpp",
    "plates/grid_data_base_dpc.cpp",   "plates/grid_data_base_trace.cpp",  "plates/wei_ban.cpp",
    "platform/qt/qt_cursors.cpp",  // the pictures of the view's cursors
};

/// Headers of geometry that platform may use: values, no behaviour of the model.
const std::set<std::string> kValueTypes = {
    "geometry/fpoint.h", "geometry/frect.h", "geometry/fline.h", "geometry/fshape.h", "geometry/fshoot.h",
    "geometry/fregion.h", "geometry/tolerance.h", "geometry/angles.h", "geometry/edge.h",
};

struct Include {
    std::string file, included;  // relative to the root
};

std::vector<Include> AllIncludes() {
    const fs::path root(TVO_SOURCE_DIR);
    const std::regex line("^\\s*#\\s*include\\s+\"([^\"]+)\"");
    std::vector<Include> found;
    for (const auto& [folder, allowed] : kMayInclude) {
        if (!fs::exists(root / folder)) continue;
        for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
            const std::string extension = entry.path().extension();
            if (extension != ".h" && extension != ".cpp") continue;
            std::ifstream file(entry.path());
            for (std::string text; std::getline(file, text);) {
                std::smatch match;
                if (std::regex_search(text, match, line))
                    found.push_back({fs::relative(entry.path(), root).string(), match[1]});
            }
        }
    }
    return found;
}

std::string FolderOf(const std::string& path) { return path.substr(0, path.find('/')); }

bool IsAllowed(const Include& include) {
    const std::string from = FolderOf(include.file), to = FolderOf(include.included);
    if (from == to || kExceptions.count({include.file, include.included})) return true;
    if ((to == "view" || to == "shell") && kMayCallView.count(include.file)) return true;
    // The view's sources talk to the frame and the prompt; its headers don't know them.
    if (from == "view" && to == "shell") return include.file.ends_with(".cpp");
    if (from == "platform" && to == "geometry") return kValueTypes.count(include.included) != 0;
    const auto allowed = kMayInclude.find(from);
    return allowed != kMayInclude.end() && allowed->second.count(to) != 0;
}

}  // namespace

TEST(IncludeLevels, IncludesPointDownwards) {
    const auto includes = AllIncludes();
    ASSERT_GT(includes.size(), 50u);  // the folders were found
    for (const Include& include : includes)
        EXPECT_TRUE(IsAllowed(include)) << include.file << " includes " << include.included;
}

TEST(IncludeLevels, IncludesAreWrittenFromTheRoot) {
    for (const Include& include : AllIncludes())
        EXPECT_TRUE(fs::exists(fs::path(TVO_SOURCE_DIR) / include.included))
            << include.file << " includes " << include.included;
}

TEST(IncludeLevels, ExceptionsAreStillNeeded) {
    std::set<std::string> callers;
    std::set<std::pair<std::string, std::string>> against;
    for (const Include& include : AllIncludes()) {
        const std::string from = FolderOf(include.file), to = FolderOf(include.included);
        if ((to == "view" || to == "shell") && from != "view" && from != "shell") callers.insert(include.file);
        against.insert({include.file, include.included});
    }
    EXPECT_EQ(callers, kMayCallView);
    for (const auto& exception : kExceptions) EXPECT_TRUE(against.count(exception)) << exception.first;
}

TEST(IncludeLevels, HeadersDoNotGoRound) {
    std::map<std::string, std::set<std::string>> headers;
    for (const Include& include : AllIncludes())
        if (include.file.ends_with(".h")) headers[include.file].insert(include.included);
    // Takes away headers that include none of those left; what can't be taken away goes round.
    for (bool taken = true; taken;) {
        taken = false;
        for (auto at = headers.begin(); at != headers.end();) {
            const bool stuck = std::any_of(at->second.begin(), at->second.end(),
                                           [&](const std::string& name) { return headers.count(name) != 0; });
            at = stuck ? std::next(at) : (taken = true, headers.erase(at));
        }
    }
    for (const auto& [file, includes] : headers) ADD_FAILURE() << file << " includes itself in the end";
}
