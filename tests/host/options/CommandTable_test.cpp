// SPDX-License-Identifier: MIT
// The table of commands and options: descriptions, value names and the layout of --help.

#include "host/options/CommandTable.h"

#include "host/commandline/HelpFormatter.h"

#include <gmock/gmock.h>

#include <sstream>
#include <string>

namespace {

using testing::HasSubstr;
using testing::Not;

TEST(CommandTable, EachCommandHasADescriptionAndExamples)
{
    host::CommandTable table;
    const auto commands = host::visibleCommands(table.app());
    EXPECT_EQ(commands.size(), 9U);
    for (const auto* command : commands) {
        EXPECT_FALSE(command->get_description().empty()) << command->get_name();
        EXPECT_THAT(command->get_footer(), HasSubstr("magellangps " + command->get_name()));
    }
}

TEST(CommandTable, EachOptionHasADescriptionAndEachValueAName)
{
    host::CommandTable table;
    auto tables = host::visibleCommands(table.app());
    tables.push_back(&table.app());
    for (const auto* command : tables) {
        for (const auto* option : command->get_options()) {
            EXPECT_FALSE(option->get_description().empty()) << option->get_name();
            if (option->get_expected_min() > 0) {
                EXPECT_THAT(option->get_type_name(), Not(testing::AnyOf("", "TEXT", "INT", "UINT")))
                    << option->get_name();
            }
        }
    }
}

TEST(CommandTable, HelpFitsEightyColumns)
{
    host::CommandTable table;
    std::vector<std::string> texts{table.app().help()};
    for (const auto* command : host::visibleCommands(table.app()))
        texts.push_back(command->help("magellangps"));
    for (const auto& text : texts) {
        std::istringstream lines{text};
        for (std::string line; std::getline(lines, line);)
            EXPECT_LE(line.size(), 80U) << line;
    }
}

TEST(CommandTable, HelpBeginsWithTheUsage)
{
    host::CommandTable table;
    EXPECT_THAT(table.app().help(), testing::StartsWith("usage: magellangps [OPTIONS] COMMAND\n"));
    EXPECT_THAT(table.app().get_subcommand("import")->help("magellangps"),
                testing::StartsWith("usage: magellangps import [OPTIONS] FILE...\n"));
    EXPECT_THAT(table.app().get_subcommand("send")->help("magellangps"),
                testing::StartsWith("usage: magellangps send [OPTIONS] [FILE...]\n"));
    EXPECT_THAT(table.app().get_subcommand("restore")->help("magellangps"),
                testing::StartsWith("usage: magellangps restore [OPTIONS] [BACKUP]\n"));
}

TEST(CommandTable, ExclusionsAreInTheDescriptions)
{
    host::CommandTable table;
    EXPECT_THAT(table.app().help(), HasSubstr("not with -v"));
    EXPECT_THAT(table.app().help(), HasSubstr("not with -q"));
    EXPECT_THAT(table.app().help(), Not(HasSubstr("Excludes")));
}

} // namespace
