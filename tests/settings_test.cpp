// The settings file: what is kept comes back, and rubbish is set aside.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "file_fixtures.h"
#include "host/settings/profile_settings.h"
#include "host/settings/settings_file.h"
#include "model/profile.h"

namespace {

namespace fs = std::filesystem;

class Settings : public testing::Test {
protected:
    ~Settings() override { g_cTvoProfile = m_before; }
    std::string File() const { return m_folder.path + "tvobase/settings"; }
    void Write(const std::string& bytes) const {
        fs::create_directories(m_folder.path + "tvobase");
        std::ofstream(File(), std::ios::binary) << bytes;
    }
    bool Aside(int n) const { return fs::exists(File() + ".broken-" + std::to_string(n)); }

    const CTvoProile m_before = g_cTvoProfile;
    const TempFolder m_folder;
};

}  // namespace

TEST_F(Settings, WhateverIsWrittenComesBack) {
    std::mt19937 rng(11);
    std::map<std::pair<std::string, std::string>, std::string> all;
    const std::string bytes("=\\% #\n\r\t\0\xFF" "a.厅", 15);
    const auto any = [&] {
        std::string text;
        for (auto n = rng() % 6; n > 0; --n) text += bytes[rng() % bytes.size()];
        return text;
    };
    {
        SettingsFile settings(File());
        for (int i = 0; i < 3000; ++i) {
            const std::pair key{any(), any().insert(0, 1, 'n')};
            settings.Write(key.first, key.second, all[key] = any());
        }
    }
    SettingsFile again(File());
    EXPECT_TRUE(again.TakeMessages().empty());
    for (const auto& [key, value] : all) ASSERT_EQ(again.Read(key.first, key.second), value) << key.first << " " << key.second;
    EXPECT_EQ(again.Read("none", "none"), std::nullopt);
}

TEST_F(Settings, RubbishIsSetAsideAndNeverACrash) {
    const struct {
        const char* name;
        std::string bytes;
        bool good;  // a\b = 1, which stands in it, holds
        bool told;
    } rows[] = {
        {"as it should be", "a\\b = 1\n", true, false},
        {"ends of lines of another system, a remark, an empty line", "# x\r\n\r\na\\b = 1\r\n", true, false},
        {"nothing", "", false, false},
        {"no end of the last line", "a\\b = 1", true, false},
        {"a value of nothing", "c\\d =\nc\\e = \na\\b = 1\n", true, false},
        {"a line without a value", "a\\b = 1\nrubbish\n", true, true},
        {"a line without a group", "a = 1\na\\b = 1\n", true, true},
        {"half an escape", "a\\c = %4\na\\b = 1\nx\\y = %", true, true},
        {"an escape that is none", "a\\c = %GG\na\\b = 1\n", true, true},
        {"NUL bytes", std::string("a\\b = 1\n\0\0", 10), false, true},
        {"no UTF-8", "a\\b = 1\na\\c = \xFF\n", false, true},
        {"too long", "a\\b = 1\n" + std::string(5 << 20, '#'), false, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        fs::remove_all(m_folder.path + "tvobase");
        Write(row.bytes);
        SettingsFile settings(File());
        EXPECT_EQ(settings.Read("a", "b").value_or("") == "1", row.good);
        EXPECT_EQ(settings.TakeMessages().size(), row.told ? 1u : 0u);
        EXPECT_EQ(Aside(1), row.told);
        settings.Write("new", "one", "2");
        settings.Save();
        EXPECT_EQ(SettingsFile(File()).Read("new", "one"), "2");
    }
    for (int n = 2; n < 4; ++n) {  // a folder; each time another name
        fs::remove(File());
        fs::create_directories(File() + "/inside");
        EXPECT_EQ(SettingsFile(File()).TakeMessages().size(), 1u);
        EXPECT_TRUE(Aside(n));
    }
    SettingsFile nowhere(m_folder.path + "tvobase/settings.broken-1/below");
    nowhere.Write("a", "b", "c");
    nowhere.Save();
    nowhere.Save();
    EXPECT_EQ(nowhere.TakeMessages().size(), 1u);
}

TEST_F(Settings, SessionsThatShareTheFileTakeNothingFromOneAnother) {
    Write("a\\one = 1\na\\two = 1\na\\three = 1\n");
    {
        SettingsFile first(File()), second(File());
        first.Write("a", "one", "first");
        first.Write("a", "three", "first");
        first.Save();
        EXPECT_EQ(second.Read("a", "one"), "1");
        second.Write("a", "two", "second");
        second.Write("a", "three", "1");  // it is that: nothing has been changed here
        second.Refresh();
        EXPECT_EQ(second.Read("a", "one"), "first");
        EXPECT_EQ(second.Read("a", "two"), "second");
        first.Write("a", "one", "again");
    }  // the second goes first
    const SettingsFile after(File());
    EXPECT_EQ(after.Read("a", "one"), "again");
    EXPECT_EQ(after.Read("a", "two"), "second");
    EXPECT_EQ(after.Read("a", "three"), "first");

    SettingsFile late(File());
    Write("rubbish\na\\four = 4\n");
    late.Write("a", "one", "late");
    late.Save();
    EXPECT_EQ(late.TakeMessages().size(), 1u);
    EXPECT_EQ(SettingsFile(File()).Read("a", "four"), "4");
    EXPECT_EQ(SettingsFile(File()).Read("a", "one"), "late");
}

TEST_F(Settings, RandomBytesAreHarmless) {
    std::mt19937 rng(12);
    for (int round = 0; round < 500; ++round) {
        std::string bytes;
        for (auto n = rng() % 200; n > 0; --n) bytes += "a\\ =%4\nF#\r"[rng() % 11];
        Write(bytes);
        SettingsFile settings(File());
        LoadProfile(settings);
        fs::remove_all(m_folder.path + "tvobase");
    }
}

TEST_F(Settings, TheProfileComesBackAndWhatMakesNoSenseStays) {
    {
        SettingsFile settings(File());
        g_cTvoProfile.m_crRubber = 0x123456;
        g_cTvoProfile.m_nTextColor = 77;
        g_cTvoProfile.m_fKbdStepMin = 0.1f;
        SaveProfile(settings);
        EXPECT_EQ(settings.Read("profile", "Rubber"), "#563412");
    }
    g_cTvoProfile = m_before;
    SettingsFile settings(File());
    const struct {
        const char* name;
        const char* value;
    } bad[] = {{"Background", "#12345"},   {"Background", "red"},     {"SymbolSize", "0"},           {"SymbolSize", "1e3"},
               {"NodeColor", "256"},       {"NodeColor", "-1"},       {"LineDirection", "2"},        {"DisplayDivisor", "nan"},
               {"DisplayDivisor", "0"},    {"KeyboardStepMax", "inf"}, {"TextHeightMin", ""},         {"LineColor", "99999999999"},
               {"TextHeightMax", "5 mm"}};
    LoadProfile(settings);
    EXPECT_TRUE(settings.TakeMessages().empty());
    EXPECT_EQ(g_cTvoProfile.m_crRubber, 0x123456u);
    EXPECT_EQ(g_cTvoProfile.m_nTextColor, 77);
    EXPECT_EQ(g_cTvoProfile.m_fKbdStepMin, 0.1f);
    for (const auto& row : bad) {
        SCOPED_TRACE(std::string(row.name) + " = " + row.value);
        SettingsFile one("");
        one.Write("profile", row.name, row.value);
        LoadProfile(one);
        EXPECT_EQ(one.TakeMessages().size(), 1u);
        SettingsFile after("");
        SaveProfile(after);
        EXPECT_EQ(after.Read("profile", row.name), settings.Read("profile", row.name));
    }
    settings.Write("profile", "TextHeightMin", "6000");
    LoadProfile(settings);
    EXPECT_EQ(settings.TakeMessages().size(), 1u);
    EXPECT_EQ(g_cTvoProfile.m_fTextHeightMin, m_before.m_fTextHeightMin);
}
