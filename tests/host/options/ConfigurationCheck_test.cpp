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
    EXPECT_EQ(mistakeIn("utc = true\n[acquire]\nformat = \"kml\"\n[window]\nunits = 5\n"), "");
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
