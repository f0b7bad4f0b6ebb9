// SPDX-License-Identifier: MIT
// What is offered for a word, with a program made up for it.

#include "host/commandline/Completion.h"

#include <CLI/CLI.hpp>
#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using testing::HasSubstr;
using testing::Not;

// A program with an option of each sort. The parsed values do not matter.
class Completion : public testing::Test {
protected:
    Completion()
    {
        app_.add_option("--into", text_, "Where to")->type_name("DIR");
        app_.add_option("--also", texts_, "More of it")->type_name("WORD")->allow_extra_args(false);
        app_.add_flag("--quick", flag_, "Now");
        auto* const get = app_.add_subcommand("get", "Get it");
        get->add_option("-o,--output", text_, "The file")->type_name("FILE");
        auto* const format = get->add_option("--format", text_, "How")->type_name("FORMAT");
        get->add_option("--level", text_, "How much")->type_name("N");
        get->add_flag("--secret", flag_, "Hidden")->group("");
        get->add_option("files", texts_, "From where")->type_name("FILE");
        auto* const pick = app_.add_subcommand("pick", "Pick one");
        auto* const item = pick->add_option("item", text_, "Which")->type_name("ITEM");
        app_.add_subcommand("ghost", "Hidden")->group("");
        sources_[format] = host::wordSource({"gpx", "geojson\tfor maps", "kml"});
        sources_[item] = [this](const host::TypedValues& typed) {
            typed_ = typed;
            return std::vector<std::string>{"one", ":folders"};
        };
    }

    std::string complete(const std::vector<std::string>& words)
    {
        return host::completionsOf(app_, sources_, words);
    }

    std::string text_;
    std::vector<std::string> texts_;
    bool flag_ = false;
    CLI::App app_{"", "program"};
    host::ValueSources sources_;
    host::TypedValues typed_;
};

TEST_F(Completion, FirstWordIsACommand)
{
    EXPECT_EQ(complete({""}), "get\tGet it\npick\tPick one\n");
    EXPECT_EQ(complete({"p"}), "pick\tPick one\n");
    EXPECT_EQ(complete({"--quick", "g"}), "get\tGet it\n");
    EXPECT_EQ(complete({"x"}), "");
    EXPECT_EQ(complete({}), complete({""}));
}

TEST_F(Completion, CommandsOptionsComeBeforeTheProgramsOwn)
{
    EXPECT_EQ(complete({"get", "--"}), "--help\tPrint this help message and exit\n"
                                       "--output\tThe file\n--format\tHow\n--level\tHow much\n"
                                       "--into\tWhere to\n--also\tMore of it\n--quick\tNow\n");
    EXPECT_EQ(complete({"get", "--out"}), "--output\tThe file\n");
}

TEST_F(Completion, OptionIsOfferedOnceUnlessItMayBeRepeated)
{
    EXPECT_EQ(complete({"--quick", "--q"}), "");
    EXPECT_EQ(complete({"--into", "x", "--in"}), "");
    EXPECT_EQ(complete({"get", "-o", "x", "--out"}), "");
    EXPECT_EQ(complete({"--also", "x", "--al"}), "--also\tMore of it\n");
}

TEST_F(Completion, ValueComesFromItsSourceOrItsType)
{
    EXPECT_EQ(complete({"get", "--format", "g"}), "gpx\ngeojson\tfor maps\n");
    EXPECT_EQ(complete({"get", "-o", ""}), ":files\n");
    EXPECT_EQ(complete({"get", "--into", "x"}), ":folders\n");
    EXPECT_EQ(complete({"get", "--level", ""}), "");
}

TEST_F(Completion, ValueAfterAnEqualsSignKeepsItsOption)
{
    EXPECT_EQ(complete({"get", "--format=k"}), "--format=kml\n");
    EXPECT_EQ(complete({"get", "--output="}), ":files\n");
    EXPECT_EQ(complete({"get", "--quick="}), "");
    EXPECT_EQ(complete({"get", "--nonsense=x"}), "");
}

TEST_F(Completion, ValueThatLooksLikeACommandOrAnOptionIsAValue)
{
    EXPECT_EQ(complete({"--into", "get", "p"}), "pick\tPick one\n");
    EXPECT_EQ(complete({"get", "--into", "--format", "k"}), ":files\n");
}

TEST_F(Completion, ArgumentsAreOfferedAsOftenAsTheyAreAccepted)
{
    EXPECT_EQ(complete({"get", ""}), ":files\n");
    EXPECT_EQ(complete({"get", "a", "b", ""}), ":files\n");
    EXPECT_EQ(complete({"pick", "o"}), "one\n:folders\n");
    EXPECT_EQ(complete({"pick", "one", ""}), "");
}

TEST_F(Completion, AfterTwoHyphensEverythingIsAnArgument)
{
    EXPECT_EQ(complete({"get", "--", "--fo"}), ":files\n");
}

TEST_F(Completion, SourceSeesWhatHasBeenTyped)
{
    (void)complete({"--also", "a", "pick", "--also=b", "--quick", ""});
    EXPECT_THAT(typed_["--also"], testing::ElementsAre("a", "b"));
    EXPECT_EQ(typed_.count("--into"), 0U);
}

TEST_F(Completion, HiddenOptionsAndCommandsAreNotOffered)
{
    EXPECT_THAT(complete({""}), Not(HasSubstr("ghost")));
    EXPECT_THAT(complete({"get", "-"}), Not(HasSubstr("secret")));
}

TEST_F(Completion, WordsFollowTheCommandAndTwoHyphens)
{
    const std::vector<const char*> words{"program", "__complete", "--", "get", "--", ""};
    EXPECT_THAT(host::wordsToComplete(6, words.data()), testing::ElementsAre("get", "--", ""));
    EXPECT_THAT(host::wordsToComplete(4, words.data()), testing::ElementsAre("get"));
    EXPECT_THAT(host::wordsToComplete(2, words.data()), testing::IsEmpty());
}

} // namespace
