// SPDX-License-Identifier: MIT
// Defaults of options in the user's configuration file, with the built program.

#include "system/Program.h"
#include "system/Receiver.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using support::kSampleReceiver;
using support::Ran;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class Configuration : public testing::Test {
protected:
    /// Runs the program with this text in the user's configuration file.
    Ran run(const std::string& text, const std::vector<std::string>& words) const
    {
        home_.put("magellangps/config.toml", text);
        return support::magellangps(words, {.environment = {"XDG_CONFIG_HOME=" + home_.path()}});
    }

    [[nodiscard]] std::string path() const { return home_.path("magellangps/config.toml"); }

    support::TemporaryFolder home_;
    support::Receiver receiver_;
};

TEST_F(Configuration, OptionsOfAnyCommandGetTheirDefaults)
{
    const auto text = "json = true\n[acquire]\ndevice = \"" + receiver_.path() + "\"\n";
    EXPECT_THAT(run(text, {"acquire"}).out, StartsWith("{\"status\":0"));
    EXPECT_THAT(run(text, {"info"}).out, StartsWith("{\"name\""));
    EXPECT_THAT(run("[import]\nno-config = true\n", {"info"}).err,
                HasSubstr("\"no-config\" can be typed only"));
}

TEST_F(Configuration, EjectIsForDisksOnlyUnlessItIsTyped)
{
    const auto text = "[acquire]\neject = true\ndevice = \"" + receiver_.path() + "\"\n";
    const auto ran = run(text, {"acquire"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.err, Not(HasSubstr("eject")));
    const auto typed = run(text, {"acquire", "--eject"});
    EXPECT_EQ(typed.status, 3);
    EXPECT_THAT(typed.err, HasSubstr("This device cannot be ejected"));
}

TEST_F(Configuration, FileIsReadFromTheHomeFolderWithoutTheVariable)
{
    home_.put(".config/magellangps/config.toml", "json = true\n");
    const auto ran = support::run(
        {"/usr/bin/env", "HOME=" + home_.path(), MAGELLAN_BIN_DIR "/magellangps", "info"});
    EXPECT_THAT(ran.out, StartsWith("{\"name\""));
}

TEST_F(Configuration, MissingFileIsFineUnlessItWasNamed)
{
    const support::How how{.environment = {"XDG_CONFIG_HOME=" + home_.path("none")}};
    EXPECT_EQ(support::magellangps({"info"}, how).status, 0);
    const auto ran = support::magellangps({"info", "--config", home_.path("none")}, how);
    EXPECT_EQ(ran.status, 2);
    EXPECT_EQ(ran.err, "magellangps: " + home_.path("none") +
                           " cannot be read (No such file or directory); check its path and "
                           "permissions, or leave --config out\n");
}

TEST_F(Configuration, FileThatCannotBeReadIsNamed)
{
    home_.put("magellangps/config.toml/x", "");
    const auto ran =
        support::magellangps({"info"}, {.environment = {"XDG_CONFIG_HOME=" + home_.path()}});
    EXPECT_EQ(ran.status, 2);
    EXPECT_THAT(ran.err, StartsWith("magellangps: " + path() + " cannot be read"));
}

TEST_F(Configuration, MistakesNameTheFileAndTheLine)
{
    const auto mistake = [&](const std::string& text) {
        const auto ran = run(text, {"info"});
        EXPECT_EQ(ran.status, 2);
        EXPECT_THAT(ran.out, IsEmpty());
        return ran.err;
    };
    const std::string hint = "; correct the file, or ignore it with --no-config\n";
    EXPECT_EQ(mistake("\n[acquire]\nformatt = \"gpx\"\n"),
              "magellangps: " + path() +
                  ", line 3: there is no option \"formatt\" of acquire, did you mean \"format\"?" +
                  hint);
    EXPECT_EQ(
        mistake("[watch]\nformat = \"gqx\"\n"),
        "magellangps: " + path() +
            ", line 2: unknown output format \"gqx\"; the formats are: gpx, kml, kmz, geojson, "
            "html, csv, jsonl" +
            hint);
    EXPECT_EQ(mistake("[send]\nkeep-backups = 0\n"),
              "magellangps: " + path() +
                  ", line 2: --keep-backups: \"0\" is not a whole number from 1 to 2147483647" +
                  hint);
    EXPECT_THAT(mistake("format: gpx\n"),
                StartsWith("magellangps: " + path() + ", line 1: this is not TOML, whose"));
}

TEST_F(Configuration, BadFileBreaksNeitherHelpNorCompletionNorNoConfig)
{
    for (const auto& words : std::vector<std::vector<std::string>>{{"--help"},
                                                                   {"help", "acquire"},
                                                                   {"acquire", "--help"},
                                                                   {"--version"},
                                                                   {"info", "--no-config"},
                                                                   {"__complete", "acq"}}) {
        const auto ran = run("nonsense\n", words);
        EXPECT_EQ(ran.status, 0) << words.front();
        EXPECT_THAT(ran.err, IsEmpty()) << words.front();
        EXPECT_THAT(ran.out, Not(IsEmpty())) << words.front();
    }
    EXPECT_THAT(run("nonsense\n", {"acquire", "--nonsense"}).err,
                HasSubstr("unknown option \"--nonsense\""))
        << "what was typed comes first";
}

TEST_F(Configuration, NamedFileReplacesTheUsersOwn)
{
    home_.put("other.toml", "json = true\n");
    EXPECT_THAT(run("nonsense\n", {"info", "--config", home_.path("other.toml")}).out,
                StartsWith("{\"name\""));
    EXPECT_THAT(run("", {"info", "--config", "a", "--no-config"}).err,
                HasSubstr("cannot be used together"));
}

TEST_F(Configuration, DefaultThatDoesNotFitToWhatWasTypedIsLeftOut)
{
    const auto& device = receiver_.path();
    const auto json =
        run("json = true\n", {"acquire", "--device", device, "-o", "-", "--format", "gpx"});
    EXPECT_EQ(json.status, 0) << json.err;
    EXPECT_THAT(json.out, EndsWith("</gpx>\n"));
    EXPECT_EQ(run("json = true\n", {"acquire", "--device", device, "--events"}).status, 0);
    const auto list =
        run("[acquire]\noutput = \"a.kml\"\n", {"acquire", "--device", device, "--list"});
    EXPECT_THAT(list.out, StartsWith("Kind"));
    EXPECT_EQ(run("events = true\n", {"info"}).status, 0);
    EXPECT_EQ(run("quiet = true\n", {"info", "-v"}).status, 0);
    const auto times = run("[acquire]\nuntil = 2024-01-01\n",
                           {"acquire", "--device", device, "--since", "2024-02-01"});
    EXPECT_EQ(times.status, 0);
    EXPECT_THAT(times.err, HasSubstr("note: \"until\" of the configuration file is not used"));
    EXPECT_THAT(times.err, HasSubstr(", line 2"));
    EXPECT_THAT(run("[acquire]\nsince = 2024-01-01\n",
                    {"acquire", "--device", device, "--until", "2024-01-01"})
                    .err,
                Not(HasSubstr("not used")));
    EXPECT_THAT(run("[acquire]\nsince = 2024-01-01\n",
                    {"acquire", "--device", device, "--since", "2023-01-01"})
                    .err,
                Not(HasSubstr("not used")));
}

TEST_F(Configuration, DefaultFormatIsForFilesWithoutAKnownExtension)
{
    const std::string text = "[acquire]\nformat = \"kml\"\n";
    const auto& device = receiver_.path();
    EXPECT_EQ(run(text, {"acquire", "--device", device}).status, 0);
    EXPECT_EQ(run(text, {"acquire", "--device", device, "-o", home_.path("a.gpx")}).status, 0);
    EXPECT_THAT(home_.read("a.gpx"), HasSubstr("<gpx"));
    EXPECT_EQ(run(text, {"acquire", "--device", device, "-o", home_.path("a")}).status, 0);
    EXPECT_THAT(home_.read("a"), HasSubstr("<kml"));
    EXPECT_THAT(run(text, {"acquire", "--device", device, "-o", "-"}).out, HasSubstr("<kml"));
}

TEST_F(Configuration, TypedDeviceOverrulesADefaultDriverAndTheOtherWayRound)
{
    EXPECT_EQ(
        run("[acquire]\ndriver = \"magellan-serial\"\n", {"acquire", "--device", receiver_.path()})
            .status,
        0);
    EXPECT_THAT(
        run("[acquire]\ndevice = \"/nowhere\"\n", {"acquire", "--test-folder", receiver_.path()})
            .out,
        HasSubstr("Day 1"));
}

TEST_F(Configuration, ListsAreReplacedByWhatIsTyped)
{
    const std::string text = "[acquire]\ntrack = [\"No*\", \"Day*\"]\n";
    EXPECT_THAT(run(text, {"acquire", "--device", receiver_.path()}).err,
                HasSubstr("has the name \"No*\""));
    EXPECT_THAT(run(text, {"acquire", "--device", receiver_.path(), "--track", "X"}).err,
                Not(HasSubstr("No*")));
}

} // namespace
