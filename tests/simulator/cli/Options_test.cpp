// SPDX-License-Identifier: MIT

#include "tools/simulator/cli/Options.h"

#include <gmock/gmock.h>

#include <utility>

namespace {

using simulator::ParsedCommandLine;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

ParsedCommandLine parse(std::vector<const char*> words)
{
    words.insert(words.begin(), "magellangps-simulator");
    return simulator::parseCommandLine(static_cast<int>(words.size()), words.data());
}

simulator::Options optionsOf(std::vector<const char*> words)
{
    const auto parsed = parse(std::move(words));
    EXPECT_TRUE(parsed.options) << parsed.text;
    return parsed.options.value_or(simulator::Options{});
}

TEST(SimulatorOptions, DefaultsAreThoseOfAReceiverThatWasJustSwitchedOn)
{
    const auto options = optionsOf({});
    EXPECT_EQ(options.speed, 4800);
    EXPECT_FALSE(options.handshake);
    EXPECT_FALSE(options.unpaced);
    EXPECT_FALSE(options.chatter);
    EXPECT_FALSE(options.once);
    EXPECT_THAT(options.faults, IsEmpty());
    EXPECT_FALSE(options.log);
    EXPECT_FALSE(options.link);
    EXPECT_THAT(options.sources, IsEmpty());
}

TEST(SimulatorOptions, EachOptionSetsItsMember)
{
    const auto options =
        optionsOf({"--speed", "115200", "--handshake", "on", "--unpaced", "--chatter", "--once",
                   "--log", "a log", "--link", "a link", "file", "folder"});
    EXPECT_EQ(options.speed, 115200);
    EXPECT_TRUE(options.handshake);
    EXPECT_TRUE(options.unpaced);
    EXPECT_TRUE(options.chatter);
    EXPECT_TRUE(options.once);
    EXPECT_EQ(options.log, "a log");
    EXPECT_EQ(options.link, "a link");
    EXPECT_THAT(options.sources, ElementsAre("file", "folder"));
    EXPECT_FALSE(optionsOf({"--handshake", "off"}).handshake);
}

TEST(SimulatorOptions, FaultsAreCollectedAndDoNotSwallowTheSources)
{
    const auto options =
        optionsOf({"--fault", "ton:silence:2", "--fault", "track-data:garble", "file"});
    ASSERT_EQ(options.faults.size(), 2U);
    EXPECT_EQ(options.faults[0].step, simulator::Step::kTransferOn);
    EXPECT_EQ(options.faults[0].number, 2);
    EXPECT_EQ(options.faults[1].step, simulator::Step::kTrackData);
    EXPECT_THAT(options.sources, ElementsAre("file"));
}

TEST(SimulatorOptions, MistakesAreNamedWithStatus2)
{
    const struct {
        std::vector<const char*> words;
        const char* text;
    } cases[] = {
        {{"--speed", "4801"}, "\"4801\" is not one of 1200, 2400, 4800"},
        {{"--speed", "600"}, "\"600\" is not one of"},
        {{"--speed", "4800.0"}, "\"4800.0\" is not one of"},
        {{"--handshake", "yes"}, "\"yes\" is neither on nor off"},
        {{"--fault", "ton"}, "\"ton\" is not a fault"},
        {{"--fault", "track-data:wrong-ack"}, "\"track-data:wrong-ack\" is not a fault"},
        {{"--speed"}, "--speed"},
        {{"--nonsense"}, "--nonsense"},
    };
    for (const auto& wrong : cases) {
        const auto parsed = parse(wrong.words);
        EXPECT_FALSE(parsed.options) << wrong.text;
        EXPECT_EQ(parsed.status, 2) << wrong.text;
        EXPECT_THAT(parsed.text,
                    AllOf(HasSubstr("magellangps-simulator: "), HasSubstr(wrong.text)));
    }
}

TEST(SimulatorOptions, HelpVersionAndCompletionsAreAnswersWithStatus0)
{
    const struct {
        std::vector<const char*> words;
        const char* text;
    } cases[] = {
        {{"--help"}, "Faults: --fault STEP:KIND"},
        {{"--version"}, "magellangps-simulator "},
        {{"__complete", "--", "--handshake", ""}, "off"},
        {{"__complete", "--", "--fault", "ton:"}, "ton:silence"},
    };
    for (const auto& asked : cases) {
        const auto parsed = parse(asked.words);
        EXPECT_FALSE(parsed.options) << asked.text;
        EXPECT_EQ(parsed.status, 0) << asked.text;
        EXPECT_THAT(parsed.text, HasSubstr(asked.text));
    }
}

} // namespace
