// SPDX-License-Identifier: MIT

#include "host/options/ConfigurationCheck.h"

#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <string>

namespace {

using testing::AllOf;
using testing::HasSubstr;

/// The mistake in a file with this text.
std::string mistakeIn(const std::string& text)
{
    const support::TemporaryFolder folder;
    folder.put("config.toml", text);
    host::Configuration configuration{.path = folder.path("config.toml"),
                                      .escape = "remove the line"};
    return host::readCheckedConfiguration(configuration);
}

TEST(ConfigurationCheck, FindsNothingInAFileThatEveryCommandCanUse)
{
    EXPECT_EQ(mistakeIn("utc = true\n[acquire]\nformat = \"kml\"\n[window]\nunits = \"metric\"\n"),
              "");
}

TEST(ConfigurationCheck, FindsMistakesInTheTableOfTheWindow)
{
    const auto mistake = [](const std::string& line) { return mistakeIn("[window]\n" + line); };
    for (const std::string line :
         {"units = \"nautical\"", "utc = true", "tiles = \"file\"", "tile-file = \"a\"",
          "folder = \"\"", "keep-backups = 1", "keep-backups = 10000", "new-only = false",
          "save-new = true", "save-folder = \"b\"", ""})
        EXPECT_EQ(mistake(line), "") << line;
    EXPECT_THAT(mistake("units = \"mertic\""),
                HasSubstr(R"(line 2: "units" needs "metric", "imperial", "nautical")"));
    EXPECT_THAT(mistake("unit = \"metric\""),
                HasSubstr(R"(the window has no setting "unit", did you mean "units"?)"));
    for (const std::string line :
         {"units = 5", "units = [\"metric\", \"metric\"]", "utc = \"yes\"", "tiles = true",
          "tile-file = false", "folder = [[1]]", "keep-backups = 0", "keep-backups = 10001",
          "keep-backups = \"many\"", "new-only = 1", "save-new = {}", "nonsense = 1"})
        EXPECT_THAT(mistake(line), HasSubstr("config.toml, line 2: ")) << line;
}

TEST(ConfigurationCheck, NamesTheFileAndTheLineAndWhatToDo)
{
    EXPECT_THAT(mistakeIn("utc = true\nkeep-backups = \"many\"\n"),
                AllOf(HasSubstr("config.toml, line 2: "),
                      testing::EndsWith("; correct the file, or remove the line")));
}

TEST(ConfigurationCheck, SinceMustNotBeLaterThanUntil)
{
    EXPECT_THAT(mistakeIn("[acquire]\nsince = \"2010-01-01\"\nuntil = \"2009-01-01\"\n"),
                HasSubstr("line 3: \"since\" is later than \"until\""));
    EXPECT_THAT(mistakeIn("until = 2009-01-01\nsince = 2010-01-01\n"),
                HasSubstr("line 2: \"since\" is later than \"until\""));
    EXPECT_EQ(mistakeIn("[acquire]\nsince = \"2010-01-01\"\nuntil = \"2010-01-01\"\n"), "");
    EXPECT_EQ(mistakeIn("[acquire]\nsince = 2010-01-01\n[import]\nuntil = 2009-01-01\n"), "");
}

TEST(ConfigurationCheck, FindsWhatNoCommandKnows)
{
    EXPECT_THAT(mistakeIn("utcc = true\n"), HasSubstr("did you mean \"utc\"?"));
    EXPECT_THAT(mistakeIn("[aquire]\nutc = true\n"), HasSubstr("no command \"aquire\""));
    EXPECT_THAT(mistakeIn("format = \"doc\"\n"), HasSubstr("doc"));
    EXPECT_THAT(mistakeIn("utc\n"), HasSubstr("is not TOML"));
}

} // namespace
