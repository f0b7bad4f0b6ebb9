// SPDX-License-Identifier: MIT
// The message for each word that a command line has too much, with a program made up for it.

#include "host/commandline/Arguments.h"

#include <CLI/CLI.hpp>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// "get" works on a device, "put" and "read" on files.
class UnexpectedWord : public testing::Test {
protected:
    UnexpectedWord()
    {
        app_.require_subcommand(0, 1);
        auto* const get = app_.add_subcommand("get", "")->fallthrough();
        get->add_option("-o,--output", name_, "")->type_name("FILE");
        get->add_option("--device", name_, "")->type_name("LOCATION");
        get->add_flag("--quick", flag_, "");
        auto* const put = app_.add_subcommand("put", "")->fallthrough();
        put->add_option("files", files_, "")->type_name("FILE");
        put->add_option("--device", name_, "")->type_name("LOCATION");
        auto* const read = app_.add_subcommand("read", "")->fallthrough();
        read->add_option("file", name_, "")->type_name("FILE");
        app_.add_subcommand("list", "");
        app_.add_subcommand("ghost", "")->group("")->add_flag("--spook", flag_, "");
    }

    // The message; empty unless the words are a mistake.
    std::string mistakeIn(std::vector<const char*> words)
    {
        words.insert(words.begin(), "program");
        return host::parseArguments(app_, {}, static_cast<int>(words.size()), words.data()).text;
    }

    CLI::App app_{"", "program"};
    std::string name_;
    std::vector<std::string> files_;
    bool flag_ = false;
};

TEST_F(UnexpectedWord, OptionBeforeItsCommandBelongsAfterIt)
{
    EXPECT_EQ(mistakeIn({"--device", "x", "get"}),
              R"(--device is an option of get, and follows it: "program get --device LOCATION")");
    EXPECT_EQ(mistakeIn({"--device=x", "put"}),
              R"(--device is an option of put, and follows it: "program put --device LOCATION")");
    EXPECT_EQ(mistakeIn({"-o", "x", "get"}),
              R"(-o is an option of get, and follows it: "program get -o FILE")");
    EXPECT_EQ(mistakeIn({"--quick", "get"}),
              R"(--quick is an option of get, and follows it: "program get --quick")");
}

TEST_F(UnexpectedWord, OptionOfAnotherCommandIsNamedWithItsCommands)
{
    EXPECT_EQ(mistakeIn({"put", "--quick"}),
              R"(--quick is an option of get, not of put; see "program put --help")");
    EXPECT_EQ(mistakeIn({"--device", "x", "list"}),
              R"(--device is an option of get and put, not of list; see "program list --help")");
}

TEST_F(UnexpectedWord, OptionWithoutACommandNeedsOne)
{
    EXPECT_EQ(
        mistakeIn({"--device", "x"}),
        R"(--device is an option of get and put, and follows the command; see "program --help")");
}

TEST_F(UnexpectedWord, OptionOfAHiddenCommandIsUnknown)
{
    EXPECT_EQ(mistakeIn({"get", "--spook"}),
              R"(unknown option "--spook"; see "program get --help")");
}

TEST_F(UnexpectedWord, LongOptionHasTwoHyphens)
{
    EXPECT_EQ(mistakeIn({"get", "-output", "x"}),
              R"(unknown option "-output"; did you mean "--output"?)");
    EXPECT_EQ(mistakeIn({"get", "-device=x"}),
              R"(unknown option "-device"; did you mean "--device"?)");
    EXPECT_EQ(mistakeIn({"get", "-outfile"}), ""); // the option -o with the value "utfile"
    EXPECT_EQ(mistakeIn({"put", "--", "-device"}), "");
}

TEST_F(UnexpectedWord, UnknownCommandGetsTheListOfCommands)
{
    EXPECT_EQ(mistakeIn({"fetch"}),
              R"(unknown command "fetch"; the commands are: get, put, read, list)");
    EXPECT_EQ(mistakeIn({"LIST"}), R"(unknown command "LIST"; did you mean "list"?)");
}

TEST_F(UnexpectedWord, FileWithoutACommandGetsTheCommandsForFiles)
{
    EXPECT_EQ(mistakeIn({"a.txt"}), R"(unknown command "a.txt"; a file follows its command: )"
                                    R"("program put a.txt" or "program read a.txt")");
}

TEST_F(UnexpectedWord, FolderWithoutACommandGetsTheCommandsForDevices)
{
    EXPECT_EQ(mistakeIn({"/tmp"}), R"(unknown command "/tmp"; a folder follows its command: )"
                                   R"("program get --device /tmp" or "program put /tmp")");
}

TEST_F(UnexpectedWord, ArgumentThatIsADeviceOrAFileIsNotTheValueOfTheOtherOption)
{
    EXPECT_EQ(mistakeIn({"get", "/tmp"}),
              R"(unexpected argument "/tmp"; did you mean "--device /tmp"?)");
    EXPECT_EQ(mistakeIn({"get", "/dev/ttyUSB7"}),
              R"(unexpected argument "/dev/ttyUSB7"; did you mean "--device /dev/ttyUSB7"?)");
    EXPECT_EQ(mistakeIn({"get", "x.gpx"}),
              R"(unexpected argument "x.gpx"; did you mean "--output x.gpx"?)");
}

TEST_F(UnexpectedWord, ArgumentBeforeItsCommandBelongsAfterIt)
{
    EXPECT_EQ(mistakeIn({"a.txt", "put"}),
              R"(unexpected argument "a.txt"; it follows the command: "program put a.txt")");
}

TEST_F(UnexpectedWord, ArgumentMayBeTheValueOfAnOption)
{
    EXPECT_EQ(mistakeIn({"get", "x"}),
              R"(unexpected argument "x"; did you mean "--output x" or "--device x"?)");
    EXPECT_EQ(mistakeIn({"read", "x", "y"}),
              R"(unexpected argument "y"; see "program read --help")");
    EXPECT_EQ(mistakeIn({"list", "x"}), R"(unexpected argument "x"; see "program list --help")");
}

} // namespace
