// SPDX-License-Identifier: MIT

#include "host/completions/Completions.h"

#include <CLI/CLI.hpp>
#include <gmock/gmock.h>

#include <string>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

// One command with an option of each sort. What it is parsed into is of no interest.
class Completions : public testing::Test {
protected:
    Completions()
    {
        app_.add_option("--bundle", text_, "A [bundle]: of all")->type_name("BUNDLE");
        auto* const command = app_.add_subcommand("get", "Get what's there");
        command->add_option("-o,--output", text_, "Where to")->type_name("FILE");
        command->add_option("--format", text_, "How")->type_name("FORMAT");
        command->add_option("--driver", text_, "By whom")->type_name("NAME");
        command->add_option("--dates", text_, "When")->type_name("auto|off|WEEKS");
        command->add_option("--level", text_, "How much")->type_name("N");
        command->add_flag("--quick", flag_, "Now");
        command->add_flag("--secret", flag_, "Hidden")->group("");
        command->add_option("files", text_, "From where")->type_name("FILE");
        app_.add_subcommand("hidden", "For nobody")->group("");
    }

    std::string script(const char* shell) { return host::completionScript(app_, shell); }

private:
    std::string text_;
    bool flag_ = false;
    CLI::App app_{"", "program"};
};

TEST_F(Completions, BashTakesAValueFromWhereItsTypeSays)
{
    EXPECT_THAT(script("bash"), AllOf(HasSubstr(" --bundle) _magellangps_files -d ;;"),
                                      HasSubstr(" -o | --output) _magellangps_files -f ;;"),
                                      HasSubstr(" --format) _magellangps_words \"gpx "),
                                      HasSubstr(" --driver) _magellangps_words \"$("),
                                      HasSubstr(" --dates) _magellangps_words \"auto off\" ;;"),
                                      HasSubstr(" --level) : ;;")));
}

TEST_F(Completions, BashOffersFilesWhereTheCommandTakesThem)
{
    EXPECT_THAT(script("bash"), HasSubstr(" get) [[ $word == -* ]] && _magellangps_words "
                                          "\"$globals -o --output --format --driver "
                                          "--dates --level --quick\" || _magellangps_files -f ;;"));
}

TEST_F(Completions, ZshTakesAValueFromWhereItsTypeSays)
{
    EXPECT_THAT(script("zsh"),
                AllOf(HasSubstr(":BUNDLE:_files -/'"),
                      HasSubstr("--output=[Where to]:FILE:_files'"), HasSubstr(":FORMAT:(gpx "),
                      HasSubstr(":NAME:_magellangps_drivers'"), HasSubstr(":(auto off)'"),
                      HasSubstr("--quick[Now]'"), HasSubstr("'*:FILE:_files'")));
}

TEST_F(Completions, ZshTextsAreQuoted)
{
    EXPECT_THAT(script("zsh"), AllOf(HasSubstr(R"([A \[bundle\]\: of all])"),
                                     HasSubstr(R"('get:Get what'\''s there')")));
}

TEST_F(Completions, FishTakesAValueFromWhereItsTypeSays)
{
    EXPECT_THAT(
        script("fish"),
        AllOf(HasSubstr("-l bundle -d 'A [bundle]: of all' -x -a '(__fish_complete_directories)'"),
              HasSubstr("-s o -l output -d 'Where to' -r -F"),
              HasSubstr("-l driver -d 'By whom' -x -a '(__magellangps_drivers)'"),
              HasSubstr("-l dates -d 'When' -x -a 'auto off'"),
              HasSubstr("-l level -d 'How much' -x\n"),
              HasSubstr(R"(-a get -d 'Get what\'s there')"),
              HasSubstr("-n '__fish_seen_subcommand_from get' -F\n")));
}

TEST_F(Completions, WhatTheHelpHidesIsHidden)
{
    for (const char* shell : {"bash", "zsh", "fish"})
        EXPECT_THAT(script(shell), AllOf(Not(HasSubstr("secret")), Not(HasSubstr("hidden"))))
            << shell;
}

} // namespace
