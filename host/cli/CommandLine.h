// SPDX-License-Identifier: MIT
// Reads a command line into one command's options, without touching a file. [host thread]

#pragma once

#include "host/cli/ExitStatus.h"
#include "host/cli/Options.h"

#include <optional>
#include <string>

namespace host {

/// What a command line amounts to: a command to run, or a text to print before leaving.
struct ParsedCommandLine {
    std::optional<CommandOptions> options;
    std::string text; ///< if there are no options. Goes to stdout if `status` is success
    ExitStatus status = ExitStatus::kSuccess;
};

[[nodiscard]] ParsedCommandLine parseCommandLine(int argc, const char* const* argv);

} // namespace host
