// SPDX-License-Identifier: MIT
// The simulator program's command line. [any]

#pragma once

#include "tools/simulator/Fault.h"

#include <optional>
#include <string>
#include <vector>

namespace simulator {

struct Options {
    int speed = 4800;
    bool handshake = false;
    bool unpaced = false;
    bool chatter = false;
    bool once = false;
    std::vector<Fault> faults{};
    std::optional<std::string> log{};
    std::optional<std::string> link{};
    std::vector<std::string> sources{}; ///< files and folders with sentences
};

struct ParsedCommandLine {
    std::optional<Options> options{}; ///< none: there is nothing to do but to say `text`
    std::string text{};
    int status = 0; ///< the exit status then
};

/// Touches no files.
[[nodiscard]] ParsedCommandLine parseCommandLine(int argc, const char* const* argv);

} // namespace simulator
