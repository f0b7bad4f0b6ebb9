// SPDX-License-Identifier: MIT
// Configurations as written in a file: what is read, and the message for each mistake.

#include "host/commandline/Configuration.h"

#include "support/TemporaryFolder.h"

#include <CLI/CLI.hpp>
#include <gmock/gmock.h>

#include <filesystem>
#include <optional>
#include <string>

#include <sys/stat.h>

namespace {

using host::Configuration;
using host::ConfiguredOption;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Values = std::vector<std::string>;

/// A program with two commands.
struct Program {
    Program()
    {
        app.add_flag("-q,--quiet", quiet, "");
        app.add_option("--plugin", plugin, "")->type_name("BUNDLE");
        app.add_flag("--no-config");
        exclusions.push_back({app.get_option("--quiet"), app.add_flag("--loud", loud, "")});
        auto& get = *app.add_subcommand("get", "");
        get.fallthrough();
        get.add_option("--from", from, "")->type_name("DIR");
        get.add_option("--only", only, "")->type_name("NAME")->allow_extra_args(false);
        get.add_option_function<std::string>(
               "--count",
               [this](const std::string& text) {
                   count = host::wholeNumber("--count", text, 1, 9);
               },
               "")
            ->type_name("N");
        get.add_option("files", files, "")->type_name("FILE");
        app.add_subcommand("put", "")->fallthrough()->add_option("--from", from, "");
    }

    CLI::App app{"", "program"};
    std::vector<host::Exclusion> exclusions;
    bool quiet = false;
    bool loud = false;
    std::optional<std::string> plugin;
    std::optional<std::string> from;
    Values only;
    Values files;
    int count = 0;
};

class ConfigurationTest : public testing::Test {
protected:
    Configuration read(const std::string& text)
    {
        folder_.put("c.toml", text);
        Configuration configuration{folder_.path("c.toml"), "skip it"};
        EXPECT_THAT(host::readConfiguration(configuration), IsEmpty());
        return configuration;
    }

    /// The mistake in a file, without its path and without the hint at its end.
    std::string mistakeIn(const std::string& text)
    {
        folder_.put("c.toml", text);
        Configuration configuration{folder_.path("c.toml"), "skip it"};
        auto mistake = host::readConfiguration(configuration);
        Program program;
        if (mistake.empty())
            mistake = host::checkConfiguration(
                configuration, program.app, program.exclusions, [](const ConfiguredOption& option) {
                    return option.name == "from" && option.value == Value{Values{"x"}}
                               ? "\"x\" is nowhere"
                               : "";
                });
        if (mistake.empty())
            return mistake;
        const auto begin = folder_.path("c.toml") + ", ";
        const std::string end = "; correct the file, or skip it";
        EXPECT_THAT(mistake, testing::StartsWith(begin));
        EXPECT_THAT(mistake, testing::EndsWith(end));
        return mistake.substr(begin.size(), mistake.size() - begin.size() - end.size());
    }

    /// A program whose command line was typed, with the defaults of a configuration.
    void parse(const std::string& text, std::vector<const char*> words)
    {
        const auto configuration = read(text);
        words.insert(words.begin(), "program");
        const auto parsed = host::parseArguments(program_.app, program_.exclusions,
                                                 static_cast<int>(words.size()), words.data());
        ASSERT_EQ(parsed.kind, host::ParseResult::Kind::kParsed) << parsed.text;
        for (const auto* const option :
             host::applicableDefaults(configuration, program_.app, program_.exclusions))
            host::setDefault(program_.app, *option);
    }

    using Value = decltype(ConfiguredOption::value);

    support::TemporaryFolder folder_;
    Program program_;
};

TEST_F(ConfigurationTest, ValuesAreTextsFlagsOrListsWithTheirLines)
{
    const auto options = read("# comment\nquiet = true\n\n[get]\nonly = [\n  'a',\n  \"b\"]\n"
                              "count = 3\nfrom = 2026-08-30\n")
                             .options;
    ASSERT_EQ(options.size(), 4U);
    EXPECT_EQ(options[0].command, "");
    EXPECT_EQ(options[0].name, "quiet");
    EXPECT_EQ(options[0].value, Value{true});
    EXPECT_EQ(options[0].line, 2U);
    EXPECT_EQ(options[1].command, "get");
    EXPECT_EQ(options[1].value, (Value{Values{"a", "b"}}));
    EXPECT_EQ(options[1].line, 5U);
    EXPECT_EQ(options[2].value, Value{Values{"3"}});
    EXPECT_EQ(options[3].value, Value{Values{"2026-08-30"}});
    EXPECT_EQ(options[3].line, 9U);
}

TEST_F(ConfigurationTest, EmptyFileIsNoMistake)
{
    EXPECT_THAT(mistakeIn(""), IsEmpty());
    EXPECT_THAT(mistakeIn("# nothing\n[get]\n"), IsEmpty());
}

TEST_F(ConfigurationTest, SettingsOfTheWindowAreNoOptions)
{
    const auto configuration = read("quiet = true\n[window]\nunits = \"metric\"\nown = [[1]]\n");
    ASSERT_EQ(configuration.options.size(), 1U);
    EXPECT_EQ(configuration.options[0].name, "quiet");
}

TEST_F(ConfigurationTest, TextThatIsNotTomlIsNamedWithItsLine)
{
    for (const char* const text : {"\nhello world\n", "\nquiet = yes\n", "\nquiet true\n",
                                   "\nplugin = \"a\n", "\n[get\n", "\nplugin = \"\xff\"\n"})
        EXPECT_THAT(mistakeIn(text), testing::StartsWith("line 2: this is not TOML, whose"))
            << text;
    EXPECT_THAT(mistakeIn("quiet = true\nquiet = true\n"), testing::StartsWith("line 2: "));
}

TEST_F(ConfigurationTest, UnknownNamesAreGuessed)
{
    EXPECT_EQ(mistakeIn("quite = true\n"),
              "line 1: there is no option \"quite\", did you mean \"quiet\"?");
    EXPECT_EQ(mistakeIn("\n[get]\nfron = 'a'\n"),
              "line 3: there is no option \"fron\" of get, did you mean \"from\"?");
    EXPECT_EQ(mistakeIn("[gett]\nfrom = 'a'\n"),
              "line 2: there is no command \"gett\", did you mean \"get\"?");
    EXPECT_EQ(mistakeIn("[gett]\n"), "line 1: there is no command \"gett\", did you mean \"get\"?");
    EXPECT_THAT(mistakeIn("[put]\ncount = 1\n"), HasSubstr("there is no option \"count\" of put"));
}

TEST_F(ConfigurationTest, ArgumentsAndWhatOnlyMakesSenseTypedAreNoOptions)
{
    for (const char* const name : {"files", "--quiet", "q"})
        EXPECT_THAT(mistakeIn(std::string{"[get]\n\""} + name + "\" = true\n"),
                    HasSubstr("there is no option"));
    for (const std::string name : {"help", "version", "config", "no-config"})
        for (const char* const table : {"", "[get]\n"})
            EXPECT_THAT(mistakeIn(table + name + " = true\n"),
                        testing::EndsWith('"' + name +
                                          "\" can be typed only, and has no place in a "
                                          "configuration file"));
}

TEST_F(ConfigurationTest, WhatOnlyMakesSenseTypedIsNotGuessed)
{
    EXPECT_THAT(mistakeIn("no-confi = true\n"), Not(HasSubstr("did you mean")));
}

TEST_F(ConfigurationTest, NullDeviceIsAnEmptyFileAndAPipeOrAnotherDeviceAMistake)
{
    ASSERT_EQ(::mkfifo(folder_.path("pipe").c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/null", folder_.path("none.toml"));
    for (const auto& path : {std::string{"/dev/null"}, folder_.path("none.toml")}) {
        Configuration configuration{path, "skip it"};
        EXPECT_EQ(host::readConfiguration(configuration), "");
        EXPECT_THAT(configuration.options, IsEmpty());
    }
    for (const auto& path : {std::string{"/dev/zero"}, folder_.path("pipe")}) {
        Configuration configuration{path, "skip it"};
        EXPECT_EQ(host::readConfiguration(configuration),
                  path + " is a pipe or a device, not a file; name a file, or skip it");
    }
}

TEST_F(ConfigurationTest, ValueOfAnotherFormIsAMistake)
{
    EXPECT_EQ(mistakeIn("quiet = 'yes'\n"), "line 1: \"quiet\" needs true or false");
    EXPECT_EQ(mistakeIn("quiet = 1\n"), "line 1: \"quiet\" needs true or false");
    EXPECT_EQ(mistakeIn("plugin = true\n"), "line 1: \"plugin\" needs a value: BUNDLE");
    EXPECT_EQ(mistakeIn("plugin = ['a', 'b']\n"), "line 1: \"plugin\" has one value, not a list");
    EXPECT_THAT(mistakeIn("[get]\nonly = [['a']]\n"), HasSubstr("line 2: \"only\" needs a text"));
    EXPECT_THAT(mistakeIn("[get.only]\na = 1\n"), HasSubstr("\"only\" needs a text"));
}

TEST_F(ConfigurationTest, ValueThatTheOptionRejectsIsAMistakeForAnyCommand)
{
    EXPECT_EQ(mistakeIn("[get]\ncount = 0\n"),
              "line 2: --count: \"0\" is not a whole number from 1 to 9");
    EXPECT_EQ(mistakeIn("[get]\ncount = 9\n"), "");
    EXPECT_EQ(mistakeIn("[put]\nfrom = 'x'\n"), "line 2: \"x\" is nowhere");
}

TEST_F(ConfigurationTest, OptionsOfATableThatExcludeEachOtherAreAMistake)
{
    EXPECT_EQ(mistakeIn("quiet = true\nloud = true\n"),
              "line 1: \"quiet\" and \"loud\" cannot be used together");
    EXPECT_THAT(mistakeIn("quiet = true\nloud = false\n"), IsEmpty());
}

TEST_F(ConfigurationTest, FileThatCannotBeReadIsAMistake)
{
    for (const char* const path : {"missing", ""}) {
        Configuration configuration{folder_.path(path), "skip it"};
        EXPECT_THAT(host::readConfiguration(configuration),
                    testing::EndsWith("; check its path and permissions, or skip it"));
    }
}

TEST_F(ConfigurationTest, DefaultsAreThoseOfTheCommandAndOfTheProgram)
{
    parse("quiet = true\nfrom = 'top'\n[get]\nonly = ['a', 'b']\ncount = 3\n[put]\nfrom = 'put'\n",
          {"get"});
    EXPECT_TRUE(program_.quiet);
    EXPECT_EQ(program_.from, "top");
    EXPECT_THAT(program_.only, ElementsAre("a", "b"));
    EXPECT_EQ(program_.count, 3);
}

TEST_F(ConfigurationTest, TypedOptionsWinAndReplaceLists)
{
    parse("[get]\nonly = ['a', 'b']\ncount = 3\nfrom = 'f'\n",
          {"get", "--only", "c", "--count", "5"});
    EXPECT_THAT(program_.only, ElementsAre("c"));
    EXPECT_EQ(program_.count, 5);
    EXPECT_EQ(program_.from, "f");
}

TEST_F(ConfigurationTest, TableOfTheCommandWinsOverWhatIsAbove)
{
    parse("quiet = true\nfrom = 'top'\n[get]\nfrom = 'get'\nquiet = false\n", {"get"});
    EXPECT_EQ(program_.from, "get");
    EXPECT_FALSE(program_.quiet);
}

TEST_F(ConfigurationTest, DefaultThatATypedOptionExcludesIsLeftOut)
{
    parse("quiet = true\n", {"get", "--loud"});
    EXPECT_FALSE(program_.quiet);
    EXPECT_TRUE(program_.loud);
}

TEST_F(ConfigurationTest, DefaultThatTheCommandsTableExcludesIsLeftOut)
{
    parse("quiet = true\n[get]\nloud = true\n", {"get"});
    EXPECT_FALSE(program_.quiet);
    EXPECT_TRUE(program_.loud);
}

} // namespace
