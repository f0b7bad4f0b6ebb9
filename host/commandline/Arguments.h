// SPDX-License-Identifier: MIT
// Parses a program's arguments with CLI11 and words every mistake for its user. Both programs parse
// with it. Reads no files. [host thread]

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace host {

/// Two options of which a command line may have one.
struct Exclusion {
    const CLI::Option* first;
    const CLI::Option* second;
};

struct ParseResult {
    enum class Kind {
        kParsed,
        kAnswer,  ///< --help or --version: `text` is what was asked for
        kMistake, ///< `text` is one sentence, without the program's name and without a line end
    };

    Kind kind = Kind::kParsed;
    std::string text{};
};

/// Parses the arguments into the variables that the app's options are bound to. After anything but
/// kParsed these variables hold whatever had been read.
[[nodiscard]] ParseResult parseArguments(CLI::App& app, const std::vector<Exclusion>& exclusions,
                                         int argc, const char* const* argv);

/// `see "PROGRAM COMMAND --help"`, for the end of a message.
[[nodiscard]] std::string helpHint(const CLI::App& app);

/// Reads an option's value as a whole number, for use in the option's callback.
/// @throws CLI::ValidationError  unless it is one from `low` to `high`
[[nodiscard]] std::int32_t wholeNumber(std::string_view option, const std::string& text,
                                       std::int32_t low, std::int32_t high);

} // namespace host
