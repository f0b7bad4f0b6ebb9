// SPDX-License-Identifier: MIT

#include <platform/System/UserDefaults.h>
#include <support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include <unistd.h>

namespace gps {
namespace {

using support::TemporaryFolder;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

std::string defaultsWith(const std::string& content)
{
    return "<plist version=\"1.0\"><dict>" + content + "</dict></plist>";
}

std::string listOf(const std::string& folder)
{
    return defaultsWith("<key>List</key><array><string>" + folder + "</string></array>");
}

TEST(UserDefaults, ReadsAnArrayOfStringsInItsOrder)
{
    const TemporaryFolder folder;
    const UserDefaults defaults{folder.put(
        "d", defaultsWith("<key>List</key><array><string>b</string><string>a</string></array>"))};
    EXPECT_THAT(defaults.stringArrayForKey("List"), Optional(ElementsAre("b", "a")));
}

TEST(UserDefaults, AValueThatIsNotAnArrayOfStringsIsMissing)
{
    const TemporaryFolder folder;
    const UserDefaults defaults{folder.put(
        "d", defaultsWith("<key>Mixed</key><array><string>a</string><integer>1</integer></array>"
                          "<key>Text</key><string>a</string>"
                          "<key>Empty</key><array/>"))};
    EXPECT_EQ(defaults.stringArrayForKey("Mixed"), std::nullopt);
    EXPECT_EQ(defaults.stringArrayForKey("Text"), std::nullopt);
    EXPECT_EQ(defaults.stringArrayForKey("None"), std::nullopt);
    EXPECT_THAT(defaults.stringArrayForKey("Empty"), Optional(IsEmpty()));
}

TEST(UserDefaults, AMissingOrBrokenFileHasNoValues)
{
    const TemporaryFolder folder;
    EXPECT_EQ(UserDefaults{folder.path("none")}.stringArrayForKey("List"), std::nullopt);
    EXPECT_EQ(UserDefaults{folder.put("broken", "<plist>")}.stringArrayForKey("List"),
              std::nullopt);
    EXPECT_EQ(UserDefaults{folder.path()}.stringArrayForKey("List"), std::nullopt);
}

TEST(UserDefaults, AChangeOfTheFileIsSeenAtTheNextLookup)
{
    const TemporaryFolder folder;
    const UserDefaults defaults{folder.put("d", listOf("old"))};
    EXPECT_THAT(defaults.stringArrayForKey("List"), Optional(ElementsAre("old")));
    folder.put("d", listOf("new"));
    EXPECT_THAT(defaults.stringArrayForKey("List"), Optional(ElementsAre("new")));
}

TEST(UserDefaults, AValueForThisRunHidesTheStoredOneUntilItIsRemoved)
{
    const TemporaryFolder folder;
    UserDefaults defaults{folder.put("d", listOf("stored"))};
    defaults.setForThisRun("List", Array{"given", "too"});
    EXPECT_THAT(defaults.stringArrayForKey("List"), Optional(ElementsAre("given", "too")));
    EXPECT_EQ(folder.read("d"), listOf("stored"));
    defaults.setForThisRun("List", {});
    EXPECT_THAT(defaults.stringArrayForKey("List"), Optional(ElementsAre("stored")));
}

TEST(UserDefaults, AValueForThisRunOfAnotherTypeHidesTheStoredOne)
{
    const TemporaryFolder folder;
    UserDefaults defaults{folder.put("d", listOf("stored"))};
    defaults.setForThisRun("List", 7);
    EXPECT_EQ(defaults.stringArrayForKey("List"), std::nullopt);
}

/// Runs in its own process, since a process looks its defaults up only once.
[[noreturn]] void exitWithStandardList(const char* configuration, const char* home,
                                       const char* expected)
{
    configuration != nullptr ? ::setenv("XDG_CONFIG_HOME", configuration, 1)
                             : ::unsetenv("XDG_CONFIG_HOME");
    home != nullptr ? ::setenv("HOME", home, 1) : ::unsetenv("HOME");
    const auto list = UserDefaults::standard().stringArrayForKey("List");
    ::_exit(list == std::vector<std::string>{expected} ? 42 : 1);
}

TEST(UserDefaults, StandardDefaultsAreInTheConfigurationFolderOrTheHomeFolder)
{
    GTEST_FLAG_SET(death_test_style, "fast");
    const TemporaryFolder folder;
    folder.put("xdg/com.Orvane.GPSPlugin/defaults.plist", listOf("xdg"));
    folder.put("home/.config/com.Orvane.GPSPlugin/defaults.plist", listOf("home"));
    const auto xdg = folder.path("xdg");
    const auto home = folder.path("home");
    const auto exits = testing::ExitedWithCode(42);
    EXPECT_EXIT(exitWithStandardList(xdg.c_str(), home.c_str(), "xdg"), exits, "");
    EXPECT_EXIT(exitWithStandardList(xdg.c_str(), nullptr, "xdg"), exits, "");
    EXPECT_EXIT(exitWithStandardList(nullptr, home.c_str(), "home"), exits, "");
    EXPECT_EXIT(exitWithStandardList("", home.c_str(), "home"), exits, "");
    EXPECT_EXIT(exitWithStandardList("xdg", home.c_str(), "home"), exits, "");
}

} // namespace
} // namespace gps
