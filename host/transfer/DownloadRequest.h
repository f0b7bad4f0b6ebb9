// SPDX-License-Identifier: MIT
// DownloadRequest: everything that a front end decides about a download before it starts. A plain
// value; what it points to must outlive the download. [host thread]

#pragma once

#include "host/formats/Formats.h"
#include "host/operations/DateFix.h"
#include "host/points/TrackGap.h"
#include "host/transfer/EventFilter.h"
#include "host/transfer/OperationWatch.h"
#include "host/transfer/TransferProgress.h"

#include <gps/Value.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// Which kinds of records a driver is asked for.
struct RequestedKinds {
    bool waypoints = true; ///< with geocaches
    bool routes = true;
    bool tracks = true;

    [[nodiscard]] bool areAll() const noexcept { return waypoints && routes && tracks; }
};

/// The file that a download writes.
struct OutputRequest {
    std::string path{};             ///< "-" is the standard output
    const Format* format = nullptr; ///< required
    std::string title{};            ///< empty: the file's name
    PageTiles tiles{};              ///< of a page; none by default

    /// What arrived is kept although something failed: under the final name if nothing is missing,
    /// otherwise as a partial file. If false, a download that fails makes no file.
    bool isKeptAfterFailure = true;

    bool isKeptEmpty = true; ///< false: a download that writes no record makes no file
};

struct DownloadRequest {
    /// Files to import, one operation each. Empty: one operation reads the driver's selected
    /// device.
    std::vector<std::string> sourceFiles{};
    std::string location{}; ///< of the selected device; not needed for an import

    RequestedKinds kinds{};
    std::optional<gps::Dictionary> driverOptions{}; ///< exactly these, instead of `kinds`
    std::optional<std::int32_t> debugLevel{};       ///< goes to the driver in either case

    DateRule dateRule{};

    /// Get each event in turn, with the times that the date rule adjusted. What passes them all
    /// goes to the consumers and to the output.
    std::vector<EventFilter*> filters{};

    GapRule gapRule{}; ///< where a new segment of a track begins, for consumers and output
    std::optional<OutputRequest> output{};

    /// Get each event, then each operation's result, and are flushed after each batch of events.
    /// Closing them is left to the caller. They are called on another thread than the download's.
    std::vector<Writer*> consumers{};         ///< with what passes the filters
    std::vector<Writer*> verbatimConsumers{}; ///< with every event as the driver reported it

    ProgressCallback progress{};

    /// Asked several times a second, on another thread than the download's. Once it returns true,
    /// the running operation is stopped and no further one begins.
    StopQuery stopRequested{};

    /// Whether the driver gets further operations, so that its worker has to be waited for.
    bool isDriverReused = false;

    /// If a mounted device's operation stops before a kind, that kind is read by an operation of
    /// its own. Has no effect with `driverOptions`.
    bool readsMissingKinds = true;
};

/// The options dictionary for one of the driver's operations.
/// @param sourceFile  the file to import; empty: the device is read
[[nodiscard]] gps::Dictionary operationOptions(const DownloadRequest& request,
                                               const std::string& sourceFile = {});

} // namespace host
