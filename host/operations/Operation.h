// SPDX-License-Identifier: MIT
// Runs one operation of a driver to its end and collects what it reported and logged. Used by
// downloads, sends and the check after a send. [host thread]

#pragma once

#include "host/operations/EventStream.h"

#include <gps/GPSPlugInProtocol.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// The option that makes an operation import a file instead of reading the device.
inline constexpr char kSourcePathKey[] = "sourcePath";

/// An error about a file or a folder that the plug-in logged without reporting it.
struct LoggedError {
    gps::Error error;
    bool isFolder = false;          ///< whether its path is a folder
    std::size_t transfersBegun = 0; ///< how many transfers had begun when it was logged
};

/// How an operation went.
struct Outcome {
    static constexpr std::size_t kMostLines = 10;    ///< log lines kept
    static constexpr std::size_t kMostErrors = 1000; ///< logged errors kept

    std::optional<gps::Error> error{};          ///< what the operation returned
    std::vector<gps::Error> reported{};         ///< `error:` calls, in order
    std::vector<gps::TransferKind> transfers{}; ///< those that began, in order
    std::vector<gps::TransferKind> sendings{};  ///< kinds whose sending ended, in order
    std::vector<LoggedError> loggedErrors{};    ///< logged errors that have a path
    std::size_t moreErrors = 0;                 ///< further ones, not kept
    std::vector<std::string> logLines{};        ///< all other log lines, line breaks replaced
    std::size_t moreLines = 0;                  ///< further ones, not kept

    /// The host stopped waiting; the driver's worker may still be running.
    bool isAbandoned = false;
};

/// Gets the status object for the driver.
using OperationStart =
    std::function<std::optional<gps::Error>(const std::shared_ptr<EventStream>& status)>;
using BatchConsumer = std::function<void(const EventBatch& batch)>;

/// Returns whether to go on waiting for an operation's end.
using WaitQuery = std::function<bool()>;

/// Starts an operation on the calling thread. Meanwhile another thread hands its events to
/// `consume`, in order. Returns when `start` has returned and, unless it returned an error, the
/// idle report has been consumed.
///
/// @param start    calls the driver; an exception that it throws becomes the operation's error
/// @param consume  must not throw; gets an empty batch now and then while there is no event
/// @param waits    called after each batch, on the same thread. Once it returns false, later events
///                 are dropped, and the function returns as soon as `start` has. Empty: waits for
///                 the end, however long it takes
[[nodiscard]] Outcome runOperation(const OperationStart& start, const BatchConsumer& consume,
                                   const WaitQuery& waits = {});

/// Whether any operation of this process was abandoned. A worker may still use the plug-in then, so
/// the process must end without destroying static objects. [any]
[[nodiscard]] bool hasAbandonedOperation() noexcept;

/// The kinds that an acquire with these options must deliver, of those that the driver can acquire:
/// the ones that the options do not switch off or, for a serial driver, the ones that they switch
/// on. Empty for an import, which delivers what is in its file.
[[nodiscard]] std::vector<gps::TransferKind> requestedKinds(const gps::Dictionary& options,
                                                            const gps::GPSPlugInProtocol& driver);

/// Whether the driver can send any kind of record.
[[nodiscard]] bool canSend(const gps::GPSPlugInProtocol& driver);

/// The word for a kind: "tracks", "routes", "waypoints".
[[nodiscard]] std::string_view kindName(gps::TransferKind kind);

} // namespace host
