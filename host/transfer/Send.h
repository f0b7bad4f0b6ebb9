// SPDX-License-Identifier: MIT
// The second half of a send: backs up the device, runs the driver's operation and checks what the
// device holds afterwards. The first half is prepareSend(). [host thread]

#pragma once

#include "host/transfer/MissingRecords.h"
#include "host/transfer/SendCheck.h"
#include "host/transfer/SendPreparation.h"

#include <gps/GPSTransferAccount.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// What a send did.
struct SendReport {
    /// Why nothing may be sent: see PreparedSend; or the device is another one, or has changed,
    /// since it was read. Nothing was sent then, and the rest is empty, but perhaps for the backup.
    std::optional<gps::Error> obstacle{};
    bool isOutdated = false; ///< the obstacle is such a change, so a new plan can be performed

    /// Why no backup could be made. Nothing was sent then, and the rest is empty.
    std::optional<gps::Error> backupError{};
    /// Whether the user stopped the send. Each planned file was written, or is as it was before.
    bool wasStopped = false;
    /// Whether the device was gone, or another one had taken its place, after the driver's
    /// operation. An error says so, and nothing is known of the files then.
    bool isDeviceGone = false;
    bool wasStoppedEarly = false; ///< before anything was written; the rest is empty, but perhaps
                                  ///< for the backup

    std::optional<Backup> backup{};            ///< holds the device's files before the send
    std::vector<std::string> notBackedUp{};    ///< paths of what is neither a file nor a folder
    std::vector<std::string> deletedBackups{}; ///< names of older ones beyond the number to keep

    std::optional<gps::Error> answer{}; ///< what the driver's operation returned
    std::vector<gps::Error> errors{};   ///< all errors in order, the answer among them
    std::size_t moreErrors = 0;         ///< further errors, of which only the number is known
    std::vector<gps::TransferKind> missingKinds{}; ///< kinds that were never sent
    std::vector<SentFile> files{};                 ///< the planned files, in the plan's order

    /// The driver's account of the files that it read before it merged; nullopt if it keeps none.
    std::optional<gps::TransferAccount> account{};
    std::vector<MissingRecord> missingRecords{}; ///< if anything else went wrong, only tracks that
                                                 ///< had no file in the plan
    std::vector<std::string> logLines{};         ///< what else the plug-in logged
    std::size_t moreLogLines = 0; ///< further lines, of which only the number is known

    /// Whether the driver's operation was run.
    [[nodiscard]] bool wasRun() const noexcept
    {
        return !obstacle && !backupError && !wasStoppedEarly;
    }

    /// Whether everything that was to be sent is on the device.
    [[nodiscard]] bool isComplete() const noexcept;
};

/// Performs a send. If a backup was requested and cannot be made, nothing is sent. Neither is
/// anything sent to a device that another program has changed since the plan was made.
[[nodiscard]] SendReport performSend(const PreparedSend& send);

} // namespace host
