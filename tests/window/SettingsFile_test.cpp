// SPDX-License-Identifier: MIT
// Configuration files as people write them, before and after the window has changed a setting.

#include "host/window/settings/SettingsFile.h"

#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

using host::WindowSettings;
using testing::HasSubstr;

class SettingsFile : public testing::Test {
protected:
    WindowSettings read(const std::string& text)
    {
        folder_.put("c.toml", text);
        WindowSettings settings;
        const auto mistake = host::readSettings(path_, settings);
        mistake_ = mistake ? *mistake->description() : "";
        return settings;
    }

    support::TemporaryFolder folder_;
    std::string path_ = folder_.path("c.toml");
    std::string mistake_;
};

WindowSettings everythingElse()
{
    return {.units = host::UnitSystem::kNautical,
            .isUtc = true,
            .tiles = WindowSettings::Tiles::kFile,
            .tileFile = "/a \"b\"\\c/\n/ä.mbtiles",
            .downloadFolder = "/d",
            .mostBackups = 3,
            .isNewOnly = true,
            .isSaving = true,
            .saveFolder = "/s"};
}

TEST_F(SettingsFile, MissingFileHasTheDefaults)
{
    WindowSettings settings = everythingElse();
    EXPECT_FALSE(host::readSettings(folder_.path("none"), settings));
    EXPECT_EQ(settings, WindowSettings{});
}

TEST_F(SettingsFile, EachSettingIsReadBackFromANewFile)
{
    const auto path = folder_.path("new/folder/c.toml");
    EXPECT_FALSE(host::writeSettings(path, everythingElse()));
    WindowSettings settings;
    EXPECT_FALSE(host::readSettings(path, settings));
    EXPECT_EQ(settings, everythingElse());
    EXPECT_FALSE(host::writeSettings(path, {}));
    EXPECT_FALSE(host::readSettings(path, settings));
    EXPECT_EQ(settings, WindowSettings{});
}

TEST_F(SettingsFile, DefaultsAreNotWritten)
{
    EXPECT_EQ(host::withSettings("", {}), "");
    EXPECT_EQ(host::withSettings("", {.isUtc = true}), "[window]\nutc = true\n");
}

TEST_F(SettingsFile, WhatTheUserWroteStaysAsItIs)
{
    const std::string before = "# Mine\nquiet = true   # as ever\n\n[ window ] # colours\n"
                               "own = [1,\n 2]\n  units  =  \"metric\"  # \"ä\"\n\n[acquire]\n"
                               "summary = true\n# The end";
    EXPECT_EQ(host::withSettings(before, {.units = host::UnitSystem::kImperial, .mostBackups = 7}),
              "# Mine\nquiet = true   # as ever\n\n[ window ] # colours\nkeep-backups = 7\n"
              "own = [1,\n 2]\n  units  =  \"imperial\"  # \"ä\"\n\n[acquire]\n"
              "summary = true\n# The end\n");
}

TEST_F(SettingsFile, ValuesBehindOtherLettersAndOfSeveralLinesAreReplaced)
{
    EXPECT_EQ(host::withSettings("[window]\n\"folder\" = \"\"\"ä\n\nö\"\"\" # ü\n"
                                 "save-folder = 'ß' # ü\nutc = true\n",
                                 {.downloadFolder = "/x", .saveFolder = "/y"}),
              "[window]\n\"folder\" = \"/x\" # ü\nsave-folder = \"/y\" # ü\nutc = false\n");
}

TEST_F(SettingsFile, TableAtTheEndWithoutALineEndGetsItsKeys)
{
    EXPECT_EQ(host::withSettings("quiet = true\r\n[window]", {.isUtc = true}),
              "quiet = true\r\n[window]\nutc = true\n");
    EXPECT_EQ(host::withSettings("quiet = true", {.isUtc = true}),
              "quiet = true\n\n[window]\nutc = true\n");
}

TEST_F(SettingsFile, FormThatCannotBeChangedIsRefusedAndTheFileStays)
{
    for (const auto& text : std::vector<std::string>{
             "window = { utc = false }\n", "window.utc = false\nquiet = true\n", "window = 1\n",
             "a = \"\"\"\n[window]\n\"\"\"\n[window.inner]\nx = 1\n", "not TOML"}) {
        folder_.put("c.toml", text);
        const auto failure = host::writeSettings(path_, {.isUtc = true, .mostBackups = 7});
        if (failure) {
            EXPECT_EQ(folder_.read("c.toml"), text);
            continue;
        }
        WindowSettings settings; // it could be changed after all
        EXPECT_FALSE(host::readSettings(path_, settings)) << text;
        EXPECT_EQ(settings, (WindowSettings{.isUtc = true, .mostBackups = 7})) << text;
    }
    EXPECT_FALSE(host::withSettings("window = 1\n", {.isUtc = true}));
    EXPECT_FALSE(host::withSettings("not TOML", {.isUtc = true}));
}

TEST_F(SettingsFile, MistakeIsNamedWithItsLineAndTheOtherSettingsAreRead)
{
    struct Row {
        const char* line;
        const char* mistake;
    };
    for (const auto& [line, mistake] : std::vector<Row>{
             {"units = \"feet\"", "\"units\" needs \"metric\", \"imperial\", \"nautical\""},
             {"units = 1", "\"units\" needs a text"},
             {"utc = 1", "\"utc\" needs true or false"},
             {"keep-backups = 0", "\"keep-backups\" needs a number from 1 to 10000"},
             {"unit = \"metric\"", "the window has no setting \"unit\", did you mean \"units\"?"},
             {"new-only = \"yes\"", "\"new-only\" needs true or false"},
             {"keep-backups = 10001", "\"keep-backups\" needs a number from 1 to 10000"}}) {
        const auto settings = read("[window]\n" + std::string{line} + "\nfolder = \"/x\"\n");
        EXPECT_EQ(mistake_, "The configuration file, line 2: " + std::string{mistake});
        EXPECT_EQ(settings, WindowSettings{.downloadFolder = "/x"});
    }
    (void)read("a = \n");
    EXPECT_THAT(mistake_, HasSubstr("The configuration file is not TOML: line 1 "));
}

TEST_F(SettingsFile, CommandLinesKeysCountUntilTheWindowHasItsOwn)
{
    const std::string shared = "utc = true\nkeep-backups = 3\n";
    EXPECT_EQ(read(shared), (WindowSettings{.isUtc = true, .mostBackups = 3}));
    EXPECT_EQ(read(shared + "[window]\nutc = false\nkeep-backups = 10000\n"),
              (WindowSettings{.mostBackups = 10000}));
    EXPECT_EQ(read("new-only = true\n"), WindowSettings{.isNewOnly = true});
    EXPECT_EQ(read("new-only = true\n[acquire]\nnew-only = false\n"), WindowSettings{});
    EXPECT_EQ(read("[acquire]\nnew-only = true\n[window]\nnew-only = false\n"), WindowSettings{});
    EXPECT_EQ(host::withSettings(shared, {.isUtc = true, .mostBackups = 10}),
              shared + "\n[window]\nkeep-backups = 10\n");
}

TEST_F(SettingsFile, LinkStaysALink)
{
    folder_.put("target.toml", "");
    std::filesystem::create_symlink("target.toml", path_);
    EXPECT_FALSE(host::writeSettings(path_, {.isUtc = true}));
    EXPECT_TRUE(std::filesystem::is_symlink(path_));
    EXPECT_EQ(folder_.read("target.toml"), "[window]\nutc = true\n");
}

TEST_F(SettingsFile, FileThatCannotBeReadIsNotReplaced)
{
    std::filesystem::create_directory(path_);
    EXPECT_TRUE(host::writeSettings(path_, {.isUtc = true}));
    WindowSettings settings;
    EXPECT_TRUE(host::readSettings(path_, settings));
}

} // namespace
