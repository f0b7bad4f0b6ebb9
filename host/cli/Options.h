// SPDX-License-Identifier: MIT
// The command line, read and checked without touching a file. [host thread]

#pragma once

#include "host/backup/Backup.h"
#include "host/cli/ExitStatus.h"
#include "host/formats/Formats.h"
#include "host/operations/DateFix.h"

#include <gps/Value.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace host {

enum class Command { kInfo, kDevices, kAcquire, kImport, kSend, kRestore, kWatch };

/// What the user asked for.
struct Options {
    Command command = Command::kInfo;

    // Global.
    std::optional<std::string> plugin;
    std::vector<std::string> testFolders;
    std::optional<std::int32_t> debug;
    bool json = false;
    bool events = false;
    bool quiet = false;
    bool verbose = false;

    // devices.
    bool watch = false;
    bool explain = false;

    // acquire, import, send, restore and, the driver alone, watch.
    std::optional<std::string> driver;
    std::optional<std::string> device; ///< not import
    std::vector<std::string> files;    ///< import and send

    // acquire and import.
    std::optional<std::string> output; ///< "-" is the standard output
    const Format* format = nullptr;    ///< set when there is an output, and for watch
    bool summary = false;              ///< the table, although there is an output
    bool waypoints = true;
    bool routes = true;
    bool tracks = true;
    DateRule fixDates;
    std::optional<gps::Dictionary> driverOptions; ///< instead of the host's own

    // send and restore.
    std::optional<std::string> data;         ///< the data dictionary's file, instead of GPX files
    std::optional<std::string> backupFolder; ///< instead of the user's own
    bool backup = true;
    std::uint32_t mostBackups = Keeping::kUsually; ///< of a device, at least one
    bool dryRun = false;
    bool exactNames = false;
    std::optional<std::string> restored; ///< the backup to put back; none: list them

    // watch.
    std::string into = "."; ///< the folder of the files
    bool newOnly = false;
    bool serial = false;
};

/// What came out of reading a command line: either the options, or a text to print and the status
/// to leave with.
struct ParsedCommandLine {
    std::optional<Options> options;
    std::string text;
    ExitStatus status =
        ExitStatus::kSuccess; ///< success: the text was asked for and goes to the standard output
};

[[nodiscard]] ParsedCommandLine parseCommandLine(int argc, const char* const* argv);

/// The options dictionary for a driver's operation.
/// @param sourcePath  the file to import; empty: the device is read
[[nodiscard]] gps::Dictionary driverOptions(const Options& options,
                                            const std::string& sourcePath = {});

} // namespace host
