// SPDX-License-Identifier: MIT
// RawOptions: the command line as it was typed, each option well-formed by itself. What options
// mean together is checked here, without touching a file.

#pragma once

#include "host/cli/Options.h"

#include <optional>
#include <string>

namespace host {

struct RawOptions {
    Options options;
    std::optional<std::string> format;
    std::optional<std::string> driverOptions;
    std::optional<std::string> fixDates;
    bool noWaypoints = false;
    bool noRoutes = false;
    bool noTracks = false;
    bool noBackup = false;
};

/// Makes `options` whole from what was typed beside them.
/// @return  what is wrong, in a user's words; empty: nothing
[[nodiscard]] std::string finish(RawOptions& raw);

} // namespace host
