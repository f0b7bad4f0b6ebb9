// SPDX-License-Identifier: MIT
// RawOptions: the command line as typed, each option well-formed by itself. Combinations of options
// are checked here, without touching a file. Used by the parser only. [host thread]

#pragma once

#include "host/cli/Options.h"

#include <optional>
#include <string>

namespace host {

enum class Command { kInfo, kDevices, kAcquire, kImport, kSend, kRestore, kWatch };

struct RawOptions {
    Command command = Command::kInfo;
    GlobalOptions global;

    // The options of the command; those of the other commands keep their defaults.
    DevicesOptions devices;
    AcquireOptions acquire;
    ImportOptions import;
    SendOptions send;
    RestoreOptions restore;
    WatchOptions watch;

    // Options of several commands that are stored in another form once checked.
    std::optional<std::string> format;
    std::optional<std::string> driverOptions;
    std::optional<std::string> fixDates;
    bool noWaypoints = false;
    bool noRoutes = false;
    bool noTracks = false;
    bool noBackup = false;
};

/// Checks what was typed and completes the command's options.
/// @param options  out: the command's options; unchanged after a mistake
/// @return         what is wrong, for the user to read; empty if nothing is
[[nodiscard]] std::string finish(RawOptions raw, std::optional<CommandOptions>& options);

} // namespace host
