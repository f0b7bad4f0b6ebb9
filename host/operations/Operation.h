// SPDX-License-Identifier: MIT
// Runs one operation of a driver to its end and gathers how it went. [host thread]

#pragma once

#include "host/operations/EventStream.h"

#include <gps/GPSPlugInProtocol.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// The option under which an operation imports a file instead of reading the device.
inline constexpr char kSourcePathKey[] = "sourcePath";

/// An error that the plug-in logged about a file or a folder and kept to itself.
struct LoggedError {
    gps::Error error;
    bool isFolder = false;          ///< whether its path is a folder
    std::size_t transfersBegun = 0; ///< how many transfers had begun when it was logged
};

/// What became of an operation.
struct Outcome {
    static constexpr std::size_t kMostLines = 10;    ///< log lines kept
    static constexpr std::size_t kMostErrors = 1000; ///< errors kept

    std::optional<gps::Error> error;          ///< what the operation answered
    std::vector<gps::Error> reported;         ///< what came by `error:`
    std::vector<gps::TransferKind> transfers; ///< those that began, in order
    std::vector<gps::TransferKind> sendings;  ///< kinds whose sending ended, in order
    std::vector<LoggedError> loggedErrors;    ///< errors that the plug-in logged about a path
    std::size_t moreErrors = 0;               ///< further ones, not kept
    std::vector<std::string>
        logLines; ///< every other line that the plug-in logged, breaks in it made spaces
    std::size_t moreLines = 0; ///< further ones, not kept
};

using Start =
    std::function<std::optional<gps::Error>(const gps::GPSPlugInProtocol::Status& status)>;
using Consume = std::function<void(const EventBatch& batch)>;

/// Starts an operation on the calling thread and hands its events, in order, to `consume` on
/// another one while it runs. Returns when the start has returned and, if it answered no error, the
/// idle report has been consumed.
///
/// @param start    calls the driver; a gps::RangeError that leaves it becomes the operation's error
/// @param consume  must let no exception out; gets an empty batch now and then while no event comes
[[nodiscard]] Outcome runOperation(const Start& start, const Consume& consume);

/// The kinds that an acquire with these options must bring, of those that the driver can acquire:
/// the ones that the options do not switch off or, from a driver of serial ports, the ones that
/// they switch on. None in particular for an import.
[[nodiscard]] std::vector<gps::TransferKind> requestedKinds(const gps::Dictionary& options,
                                                            const gps::GPSPlugInProtocol& driver);

/// Whether the driver can send anything at all.
[[nodiscard]] bool canSend(const gps::GPSPlugInProtocol& driver);

/// The word for a kind: "tracks", "routes", "waypoints".
[[nodiscard]] std::string_view kindName(gps::TransferKind kind);

} // namespace host
