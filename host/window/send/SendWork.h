// SPDX-License-Identifier: MIT
// What the device thread does for the page that sends: a preview of what would change on the
// receiver, and the send itself. Results are plain values for the widgets. [host thread]

#pragma once

#include "host/backup/Backup.h"
#include "host/bundle/DeviceChoice.h"
#include "host/records/SendData.h"
#include "host/transfer/TransferProgress.h"
#include "host/words/Message.h"

#include <gps/Error.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// The records to send.
struct SendChoice {
    std::shared_ptr<const RecordSet> records;
    TickedRecords ticked;
};

struct SendPreview {
    std::string location{};                  ///< of the device
    std::optional<std::string> identifier{}; ///< of the device
    std::vector<std::string> problems{};     ///< why something cannot be sent, in sentences
    std::vector<std::string> lines{};        ///< what would be written, and what would change
    PlannedRecords records{};                ///< what becomes of each
    std::string summary{};                   ///< in one sentence
    bool canSend = false;                    ///< whether anything would be written
};

struct SendResult {
    std::string sentence{}; ///< in short
    std::vector<Message> messages{};
    std::string backup{};    ///< name of the backup of the device's files; empty: there is none
    bool isComplete = false; ///< everything was read back from the device
};

/// All messages on a send.
/// @param isUtc  whether times are shown in UTC instead of by this computer's clock
[[nodiscard]] std::vector<Message> messagesOn(const SendResult& result, bool isUtc);

/// The error for a device that was selected, and is not found any more.
[[nodiscard]] gps::Error receiverGone(const std::string& location = {});

/// Plans a send. Writes nothing.
[[nodiscard]] SendPreview previewSend(const ChosenDevice& device, const SendChoice& choice,
                                      const BackupPolicy& backup);

struct SendCalls {
    ProgressCallback progress{};
    std::function<bool()> stopRequested{};
};

/// Sends, if that still does what the user has seen. If the device has changed since, nothing is
/// sent.
/// @param seen  the preview of the same choice for the same device
[[nodiscard]] SendResult sendRecords(const ChosenDevice& device, const SendChoice& choice,
                                     const SendPreview& seen, const BackupPolicy& backup,
                                     const SendCalls& calls);

} // namespace host
