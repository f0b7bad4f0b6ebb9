// SPDX-License-Identifier: MIT
// Completions that need no plug-in. tests/system has those that do.

#include "host/cli/CompleteCommand.h"

#include <gmock/gmock.h>

namespace {

using host::completionsFor;
using testing::HasSubstr;
using testing::StartsWith;

TEST(CompleteCommand, KnowsCommandsAndOptions)
{
    EXPECT_THAT(completionsFor({"ac"}), StartsWith("acquire\t"));
    EXPECT_THAT(completionsFor({"acquire", "--ou"}), StartsWith("--output\t"));
    EXPECT_THAT(completionsFor({"-q", "acquire", "--js"}), StartsWith("--json\t"));
}

TEST(CompleteCommand, KnowsFormatsAndWords)
{
    EXPECT_EQ(completionsFor({"acquire", "--format", ""}),
              "gpx\nkml\nkmz\ngeojson\nhtml\ncsv\njsonl\n");
    EXPECT_EQ(completionsFor({"watch", "--format=g"}), "--format=gpx\n--format=geojson\n");
    EXPECT_EQ(completionsFor({"watch", "--fix-dates", ""}), "auto\noff\n");
}

TEST(CompleteCommand, LeavesPathsToTheShell)
{
    EXPECT_EQ(completionsFor({"send", ""}), ":files gpx\n");
    EXPECT_EQ(completionsFor({"send", "--data", ""}), ":files\n");
    EXPECT_EQ(completionsFor({"acquire", "-o", ""}), ":files\n");
    EXPECT_EQ(completionsFor({"--test-folder", ""}), ":folders\n");
    EXPECT_EQ(completionsFor({"--plugin", ""}), ":folders\n");
    EXPECT_EQ(completionsFor({"watch", "--into", ""}), ":folders\n");
}

TEST(CompleteCommand, WithoutAPlugInOnlyPathsAreLeft)
{
    for (const char* const option : {"--driver", "--device"}) {
        EXPECT_EQ(completionsFor({"--plugin", "/nowhere", "acquire", option, ""}),
                  std::string{option} == "--driver" ? "" : ":folders\n");
    }
    EXPECT_EQ(completionsFor({"--plugin", "/nowhere", "restore", ""}), ":folders\n");
    EXPECT_EQ(completionsFor({"--plugin", "/nowhere", "import", ""}), ":files\n");
}

TEST(CompleteCommand, NumbersHaveNoCompletions)
{
    EXPECT_EQ(completionsFor({"--debug", ""}), "");
    EXPECT_EQ(completionsFor({"send", "--keep-backups", ""}), "");
}

} // namespace
