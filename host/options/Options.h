// SPDX-License-Identifier: MIT
// What the user asked for: one struct of options per command. Values only. [any]

#pragma once

#include "host/backup/Backup.h"
#include "host/desktop/DeviceDisk.h"
#include "host/formats/Formats.h"
#include "host/operations/DateFix.h"
#include "host/points/TrackGap.h"
#include "host/transfer/ChoiceFilter.h"

#include <gps/Value.h>

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace host {

/// Options that every command accepts, before or after its name.
struct GlobalOptions {
    std::optional<std::string> plugin;    ///< the bundle's path; by default the installed one
    std::vector<std::string> testFolders; ///< treated like mounted volumes
    std::optional<std::int32_t> debug;    ///< "debug" in the driver's options
    std::optional<std::string> config;    ///< the configuration file; by default the user's
    bool noConfig = false;                ///< ignore the user's configuration file
    bool json = false;
    bool events = false;
    bool quiet = false;
    bool verbose = false;
};

/// `info`
struct InfoOptions : GlobalOptions {};

/// `devices`
struct DevicesOptions : GlobalOptions {
    bool watch = false;
    bool explain = false;
    bool ask = false;                  ///< run sessions with the receivers on serial ports
    std::optional<std::string> device; ///< with `ask`: the port
};

/// What `acquire` and `import` share: where records come from and go to.
struct DownloadOptions : GlobalOptions {
    std::optional<std::string> driver; ///< its name, as `driverName` gives it
    std::optional<std::string> output; ///< "-" is the standard output
    const Format* format = nullptr;    ///< of the output; null without one
    std::optional<std::string> title;  ///< of the page
    std::optional<std::string> tiles;  ///< the URL of the page's map tiles
    std::optional<std::string> tilesAttribution;
    bool summary = false; ///< print the summary table as well as the output
    bool utc = false;     ///< times in the summary and the list are in UTC
    bool strict = false;  ///< damaged lines on the device make the status 1
    bool waypoints = true;
    bool routes = true;
    bool tracks = true;
    DateRule fixDates;
    RecordChoice choice;                          ///< which records are listed and written
    GapRule splitGap;                             ///< where a new segment of a track begins
    bool list = false;                            ///< list each record instead of writing a file
    std::optional<gps::Dictionary> driverOptions; ///< replaces the options that the host makes
};

/// `acquire`
struct AcquireOptions : DownloadOptions {
    std::optional<std::string> device; ///< a location
    std::optional<std::string> card;   ///< a folder to import, instead of a device
    DiskOptions disk;
    bool newOnly = false; ///< leave out what was saved before
};

/// `import`
struct ImportOptions : DownloadOptions {
    std::vector<std::string> files; ///< and folders; at least one
};

/// `open`
struct OpenOptions : AcquireOptions {
    std::vector<std::string> files; ///< and folders to import, instead of a device; may be empty
};

/// `send`
struct SendOptions : GlobalOptions {
    std::optional<std::string> driver;
    std::optional<std::string> device;
    DiskOptions disk;
    std::vector<std::string> files;          ///< GPX files; empty if and only if `data` is set
    std::optional<std::string> data;         ///< a JSON file holding the data dictionary
    std::optional<std::string> backupFolder; ///< by default in the user's state folder
    bool backup = true;
    std::uint32_t mostBackups = BackupPolicy::kDefaultCount; ///< kept per device, at least one
    bool dryRun = false;
    bool exactNames = false;
    bool joinSegments = false; ///< a track's segments become one track
    bool again = false;        ///< send also what the device holds already
};

/// `restore`
struct RestoreOptions : GlobalOptions {
    std::optional<std::string> driver;
    std::optional<std::string> device;
    DiskOptions disk;
    std::optional<std::string> backupFolder; ///< by default in the user's state folder
    std::uint32_t mostBackups = BackupPolicy::kDefaultCount; ///< kept per device, at least one
    std::optional<std::string> backup; ///< a listed name or a path; nullopt lists the backups
    bool force = false;
};

/// `watch`
struct WatchOptions : GlobalOptions {
    std::optional<std::string> driver; ///< watch the devices of this one only
    std::string into = ".";            ///< the folder for the files
    const Format* format = nullptr;    ///< never null after parsing
    bool newOnly = false;
    bool serial = false;
    bool mount = false;  ///< mount disks that appear and are not mounted
    bool notify = false; ///< show a notification of each download on the desktop
    DateRule fixDates;
    GapRule splitGap;
};

/// One command with its options.
using CommandOptions = std::variant<InfoOptions, DevicesOptions, AcquireOptions, ImportOptions,
                                    OpenOptions, SendOptions, RestoreOptions, WatchOptions>;

} // namespace host
