// SPDX-License-Identifier: MIT
// Configuration: defaults of options, from a TOML file. Reads the file; knows the options only from
// the app that parses the command line. [host thread]

#pragma once

#include "host/commandline/Arguments.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace host {

/// One key of the file, with what it says about an option.
struct ConfiguredOption {
    std::string command; ///< the table that the key is in; empty above all tables
    std::string name;    ///< of the option, without hyphens

    /// Of a flag: true or false. Of any other option: its values, one unless it may be repeated.
    std::variant<bool, std::vector<std::string>> value;

    std::uint32_t line; ///< from 1
};

struct Configuration {
    std::string path;
    std::string escape; ///< how to go on without the file, for the end of a message
    std::vector<ConfiguredOption> options{}; ///< in the order of the lines
    std::string windowMistake{};             ///< in the table of the window; empty: there is none
};

/// Reads a file's keys. A key has the name of an option, and a table that of a command, except
/// kWindowTable, whose mistake is kept apart.
/// @return  what is wrong with the file, for the user to read; empty if nothing is
[[nodiscard]] std::string readConfiguration(Configuration& configuration);

/// Finds an unknown option or command, a value that an option rejects, and options that exclude
/// each other. What is above all tables must be an option of the program or of any command.
/// @param app         a freshly made one: its options get the values
/// @param checkValue  finds what only the program knows to be wrong; returns an empty text if
///                    nothing is
/// @return            the mistake, for the user to read; empty if there is none
[[nodiscard]] std::string
checkConfiguration(const Configuration& configuration, CLI::App& app,
                   const std::vector<Exclusion>& exclusions,
                   const std::function<std::string(const ConfiguredOption&)>& checkValue);

/// The options of the chosen command and of the program that are to get a default: first those of
/// the command's own table, then those above all tables. Not among them are options that were
/// typed, and those that a typed one or an earlier default excludes.
/// @param app  has parsed the command line
[[nodiscard]] std::vector<const ConfiguredOption*>
applicableDefaults(const Configuration& configuration, CLI::App& app,
                   const std::vector<Exclusion>& exclusions);

/// Gives the option of the chosen command or of the program a value, as if it had been typed.
/// Precondition: checkConfiguration() found no mistake.
void setDefault(CLI::App& app, const ConfiguredOption& option);

} // namespace host
