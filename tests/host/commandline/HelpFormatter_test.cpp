// SPDX-License-Identifier: MIT
// The layout of --help: usage line, columns, wrapping.

#include "host/commandline/HelpFormatter.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class HelpFormatter : public testing::Test {
protected:
    HelpFormatter()
    {
        app_.formatter(std::make_shared<host::HelpFormatter>());
        app_.footer("Examples:\n  program get\n");
    }

    std::string text_;
    std::vector<std::string> texts_;
    bool flag_ = false;
    CLI::App app_{"Does things.", "program"};
};

TEST_F(HelpFormatter, UsageNamesTheCommandOnlyWhereThereAreCommands)
{
    EXPECT_THAT(app_.help(), StartsWith("usage: program [OPTIONS]\n\nDoes things.\n"));
    app_.add_subcommand("get", "Get it");
    EXPECT_THAT(app_.help(), StartsWith("usage: program [OPTIONS] COMMAND\n\nDoes things.\n"));
    EXPECT_THAT(app_.help(), HasSubstr("\nCommands:\n  get                     Get it\n"));
}

TEST_F(HelpFormatter, UsageDistinguishesRequiredRepeatedAndOptionalArguments)
{
    app_.add_option("one", text_, "One")->type_name("ONE")->required();
    app_.add_option("many", texts_, "Many")->type_name("MANY");
    EXPECT_THAT(app_.help(), StartsWith("usage: program [OPTIONS] ONE [MANY...]\n"));
    EXPECT_THAT(app_.help(), HasSubstr("\nArguments:\n  ONE                     One\n"));
}

TEST_F(HelpFormatter, ExclusionsAreLeftToTheDescription)
{
    auto* const quiet = app_.add_flag("-q", flag_, "Quiet");
    app_.add_option("-o,--output", text_, "Where to")->type_name("FILE")->excludes(quiet);
    EXPECT_THAT(app_.help(), HasSubstr("  -q                      Quiet\n"));
    EXPECT_THAT(app_.help(), HasSubstr("  -o, --output FILE       Where to\n"));
    EXPECT_THAT(app_.help(), Not(HasSubstr("Excludes")));
}

TEST_F(HelpFormatter, HiddenOptionsAndCommandsAreNotShown)
{
    app_.add_flag("--secret", flag_, "Hidden")->group("");
    app_.add_subcommand("ghost", "Hidden")->group("");
    EXPECT_THAT(app_.help(), Not(HasSubstr("Hidden")));
    EXPECT_THAT(app_.help(), Not(HasSubstr("COMMAND")));
}

TEST_F(HelpFormatter, LongDescriptionIsWrappedAtEightyColumns)
{
    // 54 characters fit beside the first column.
    app_.add_flag("--fits", flag_, std::string(50, 'a') + " bcd");
    app_.add_flag("--wraps", flag_, std::string(50, 'a') + " bcde");
    EXPECT_THAT(app_.help(),
                HasSubstr("  --fits                  " + std::string(50, 'a') + " bcd\n"));
    EXPECT_THAT(app_.help(), HasSubstr("  --wraps                 " + std::string(50, 'a') + "\n" +
                                       std::string(26, ' ') + "bcde\n"));
}

TEST_F(HelpFormatter, LongNameHasALineOfItsOwn)
{
    app_.add_flag("--twenty-two-columns-x", flag_, "Beside"); // 22 and two spaces on each side
    app_.add_flag("--twenty-three-columns-x", flag_, "Below");
    EXPECT_THAT(app_.help(), HasSubstr("  --twenty-two-columns-x  Beside\n"));
    EXPECT_THAT(app_.help(),
                HasSubstr("  --twenty-three-columns-x\n" + std::string(26, ' ') + "Below\n"));
}

TEST_F(HelpFormatter, CommandHasItsOwnHelp)
{
    auto* const command = app_.add_subcommand("get", "Get it");
    command->add_flag("--now", flag_, "At once");
    const std::vector<const char*> words{"program", "get"};
    app_.parse(2, words.data());
    EXPECT_THAT(app_.help(), StartsWith("usage: program get [OPTIONS]\n\nGet it\n"));
    EXPECT_THAT(app_.help(), HasSubstr("  --now                   At once\n"));
}

} // namespace
