// SPDX-License-Identifier: MIT
// Parsing, and the message for each kind of mistake, with a program made up for it.

#include "host/commandline/Arguments.h"

#include <CLI/CLI.hpp>
#include <gmock/gmock.h>

#include <optional>
#include <string>
#include <vector>

namespace {

using ParseKind = host::ParseResult::Kind;

// A program with an option of each sort and two commands.
class Arguments : public testing::Test {
protected:
    Arguments()
    {
        app_.set_version_flag("--version", "program 1.0");
        app_.require_subcommand(0, 1);
        app_.add_option("--name", name_, "")->type_name("NAME");
        app_.add_option_function<std::string>(
                "--level",
                [this](const std::string& text) {
                    level_ = host::wholeNumber("--level", text, -1, 10);
                },
                "")
            ->type_name("N");
        const auto* const quiet = app_.add_flag("-q", flag_, "");
        exclusions_.push_back({quiet, app_.add_flag("-v,--verbose", flag_, "")});
        auto* const get = app_.add_subcommand("get", "");
        get->fallthrough();
        get->add_option("-o,--output", name_, "")->type_name("FILE");
        const auto* const data = get->add_option("--data", name_, "");
        exclusions_.push_back({get->add_option("files", files_, "")->type_name("FILE"), data});
        app_.add_subcommand("put", "")
            ->add_option("files", files_, "")
            ->type_name("FILE")
            ->required();
        app_.add_subcommand("ghost", "")->group("");
    }

    host::ParseResult parse(std::vector<const char*> words)
    {
        words.insert(words.begin(), "program");
        return host::parseArguments(app_, exclusions_, static_cast<int>(words.size()),
                                    words.data());
    }

    // The message; empty unless the words are a mistake.
    std::string mistakeIn(const std::vector<const char*>& words)
    {
        const auto result = parse(words);
        return result.kind == ParseKind::kMistake ? result.text : "";
    }

    CLI::App app_{"", "program"};
    std::vector<host::Exclusion> exclusions_;
    std::string name_;
    std::optional<int> level_;
    std::vector<std::string> files_;
    bool flag_ = false;
};

TEST_F(Arguments, ParsedValuesAreInTheirVariables)
{
    EXPECT_EQ(parse({"get", "--name", "x", "--level", "3", "a", "b"}).kind, ParseKind::kParsed);
    EXPECT_EQ(name_, "x");
    EXPECT_EQ(level_, 3);
    EXPECT_THAT(files_, testing::ElementsAre("a", "b"));
}

TEST_F(Arguments, HelpAndVersionAreAnswers)
{
    EXPECT_EQ(parse({"--version"}).text, "program 1.0\n");
    EXPECT_EQ(parse({"--version"}).kind, ParseKind::kAnswer);
    EXPECT_EQ(parse({"--help"}).kind, ParseKind::kAnswer);
    EXPECT_EQ(parse({"get", "--help"}).kind, ParseKind::kAnswer);
}

TEST_F(Arguments, UnknownWordIsNamedWithTheNearestName)
{
    EXPECT_EQ(mistakeIn({"gat"}), R"(unknown command "gat"; did you mean "get"?)");
    EXPECT_EQ(mistakeIn({"fetch"}), R"(unknown command "fetch"; the commands are: get, put)");
    EXPECT_EQ(mistakeIn({"get", "--outptu=x"}),
              R"(unknown option "--outptu=x"; did you mean "--output"?)");
    EXPECT_EQ(mistakeIn({"put", "--outside"}),
              R"(unknown option "--outside"; see "program put --help")");
    EXPECT_EQ(mistakeIn({"ghots"}), R"(unknown command "ghots"; the commands are: get, put)");
}

TEST_F(Arguments, OptionAtTheEndNeedsItsValue)
{
    EXPECT_EQ(mistakeIn({"--name"}), "--name needs a value: NAME");
    EXPECT_EQ(mistakeIn({"get", "-o"}), "--output needs a value: FILE");
}

TEST_F(Arguments, RepeatedOptionIsRejected)
{
    EXPECT_EQ(mistakeIn({"--name", "a", "--name", "b"}), "--name is given more than once");
    EXPECT_EQ(mistakeIn({"get", "-o", "a", "--output", "b"}), "--output is given more than once");
}

TEST_F(Arguments, ValueAfterAnEqualsSignMayNotBeMissing)
{
    EXPECT_EQ(mistakeIn({"--name=", "get"}), R"(--name has no value after its "=")");
    EXPECT_EQ(mistakeIn({"--name=x", "get"}), "");
    EXPECT_EQ(mistakeIn({"get", "--", "--name="}), "");
}

TEST_F(Arguments, FlagAcceptsNoValue)
{
    EXPECT_EQ(mistakeIn({"--verbose=false"}), "--verbose takes no value");
    EXPECT_EQ(mistakeIn({"--verbose="}), "--verbose takes no value");
}

TEST_F(Arguments, RequiredArgumentIsNamed)
{
    EXPECT_EQ(mistakeIn({"put"}), R"(no FILE is given; see "program put --help")");
}

TEST_F(Arguments, ExclusiveOptionsAreNamedAsTheyAreTyped)
{
    EXPECT_EQ(mistakeIn({"-q", "-v"}), "-q and --verbose cannot be used together");
    EXPECT_EQ(mistakeIn({"get", "a", "--data", "d"}), "FILE and --data cannot be used together");
    EXPECT_EQ(mistakeIn({"-v"}), "");
}

TEST_F(Arguments, WholeNumberHasBoundsAndNothingAfterIt)
{
    for (const char* const good : {"-1", "0", "10", "+1", "01"})
        EXPECT_EQ(mistakeIn({"--level", good}), "") << good;
    for (const char* const bad : {"-2", "11", "", "1.5", "1x", "0x1", "much", "2147483648"})
        EXPECT_EQ(mistakeIn({"--level", bad}),
                  std::string{"--level: \""} + bad + "\" is not a whole number from -1 to 10");
}

} // namespace
