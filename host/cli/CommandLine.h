// SPDX-License-Identifier: MIT
// Reads a command line into one command's options, with defaults from a configuration file. [host
// thread]

#pragma once

#include "host/cli/ExitStatus.h"
#include "host/options/Options.h"

#include <optional>
#include <string>

namespace host {

/// What a command line amounts to: a command to run, or a text to print before leaving.
struct ParsedCommandLine {
    std::optional<CommandOptions> options;
    std::string text; ///< if there are no options. Goes to stdout if `status` is success
    ExitStatus status = ExitStatus::kSuccess;
    std::string note{}; ///< if there are options: what the user should know of them; may be empty
};

/// @param configFile  the user's configuration file, which need not exist; nullopt: there is none.
///                    Read only for a command line that is going to be run and does not ignore it
[[nodiscard]] ParsedCommandLine
parseCommandLine(int argc, const char* const* argv,
                 const std::optional<std::string>& configFile = std::nullopt);

} // namespace host
