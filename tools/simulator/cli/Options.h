// SPDX-License-Identifier: MIT
// The simulator program's command line. Reads no files. [any]

#pragma once

#include "tools/simulator/Fault.h"

#include <optional>
#include <string>
#include <vector>

namespace simulator {

struct Options {
    int speed = 4800; ///< bits per second
    bool handshake = false;
    bool unpaced = false;
    bool chatter = false;
    bool once = false;
    std::vector<Fault> faults{};
    std::optional<std::string> log{};
    std::optional<std::string> link{};
    std::vector<std::string> sources{}; ///< files and folders with sentences
};

/// What a command line amounts to: a simulator to run, or a text to print before leaving.
struct ParsedCommandLine {
    std::optional<Options> options{};
    std::string text{}; ///< if there are no options. Goes to stdout if `status` is 0
    int status = 0;
};

[[nodiscard]] ParsedCommandLine parseCommandLine(int argc, const char* const* argv);

} // namespace simulator
