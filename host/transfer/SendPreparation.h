// SPDX-License-Identifier: MIT
// The first half of a send: reads the device, fits the records to it and plans what to write.
// Changes nothing on the device, so a front end can show the result, and stop there for a dry run.
// The second half is performSend(). [host thread]

#pragma once

#include "host/backup/Backup.h"
#include "host/bundle/DeviceChoice.h"
#include "host/files/FolderLock.h"
#include "host/fitting/EmptyRecords.h"
#include "host/fitting/NameFitting.h"
#include "host/fitting/TrackSegments.h"
#include "host/formats/UnreadParts.h"
#include "host/operations/Operation.h"
#include "host/transfer/DeviceState.h"
#include "host/transfer/MissingRecords.h"
#include "host/transfer/RecordCounts.h"
#include "host/transfer/RepeatedRecords.h"
#include "host/transfer/ReplacedRecords.h"
#include "host/transfer/TransferProgress.h"

#include <gps/Error.h>
#include <gps/GPSFileDevice.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// What a send changes in the records before it plans.
enum class SendFitting {
    kNone, ///< nothing
    /// A route point that the device already has is replaced by the device's own, tracks with
    /// several segments are split or joined, and routes and tracks without points are left out.
    /// Names and texts become what the device stores of them, if no two names become one.
    kRoutePoints,
    kAll, ///< names and texts are fitted to the device as well
};

/// What to send, and how.
struct SendRequest {
    std::optional<gps::Dictionary> data; ///< nullopt: the driver is called without data
    std::size_t skippedWaypoints = 0; ///< of the files, which are not in the data; for the report
    std::vector<UnstoredText> unstoredTexts{}; ///< of the files; likewise
    gps::Dictionary driverOptions{};
    SendFitting fitting = SendFitting::kAll;

    /// What becomes of tracks with several segments; ignored by SendFitting::kNone.
    SegmentRule segmentRule = SegmentRule::kSplit;

    /// Whether to send also what the device holds already. SendFitting::kNone always does.
    bool sendsPresent = false;

    /// Only the plan is wanted: the device is not locked.
    bool isDryRun = false;

    /// Where the backup goes; nullopt: none is made. With an empty folder a send that needs a
    /// backup fails.
    std::optional<BackupPolicy> backup{};

    /// Whether the user wants the send to stop: asked now and then, on the host thread and on the
    /// one of the driver's calls. May be empty.
    std::function<bool()> stopRequested{};

    ProgressCallback progress{}; ///< may be empty
    BatchConsumer onEvents{};    ///< gets the driver's calls, on another thread; may be empty
    RepeatVisitor onRepeated{};  ///< gets what is left out as repeated; may be empty

    [[nodiscard]] bool isStopRequested() const { return stopRequested && stopRequested(); }
};

/// A send that is ready to be performed.
struct PreparedSend {
    ChosenDevice device{};
    SendRequest request{}; ///< its data fitted to the device
    bool canSend = false;  ///< whether the driver is able to send anything

    /// The driver's view of the device's files; null if the driver has none. There is no plan, no
    /// backup and no check of the result then. Owned by the driver.
    const gps::GPSFileDevice* files = nullptr;

    /// The device before the send. Null if there is nothing to plan.
    std::unique_ptr<gps::DeviceSnapshot> snapshot{};
    DeviceState state{}; ///< of the device just before the snapshot; not looked at for a dry run
    gps::SendPlan plan{};

    /// Why nothing may be sent: another program is writing to the device; something on it could not
    /// be read, which the send would then replace; or exact names would make two records one.
    std::optional<gps::Error> obstacle{};

    /// Held from before the device is read until this object ends, so that no other run of this
    /// program can change what the plan is based on. Empty for a dry run.
    std::optional<FolderLock> lock{};
    std::vector<TextChange> textChanges{};
    std::vector<SegmentedTrack> segmentedTracks{};
    std::size_t impossibleAltitudes = 0; ///< elevations that no device has room for
    /// SendFitting::kNone: the data with names and texts as the device stores them.
    std::optional<gps::Dictionary> storedData{};

    /// What is wrong with records that are sent as they are: the device would not tell them apart,
    /// or they have no name or no points. Such a send fails, but is performed.
    std::vector<gps::Error> faults{};
    std::vector<EmptyRecord> emptyRecords{}; ///< removed from the data, because no file holds them
    /// Records that would not be on the device after the send; looked for in a dry run only.
    std::vector<MissingRecord> unplanned{};
    RecordCounts repeated{}; ///< removed from the data, because it holds them once more
    bool mayReplace = true;  ///< false: the device has no record of a name that is sent
    std::vector<ReplacedRecord> replaced{}; ///< records of the device
    RecordCounts present{}; ///< removed from the data, because the device holds them already

    /// The records to send as the device stores them. Precondition: there is data.
    [[nodiscard]] const gps::Dictionary& stored() const noexcept
    {
        return storedData ? *storedData : *request.data;
    }

    /// The records of the files that are left out: skipped waypoints and empty records.
    [[nodiscard]] RecordCounts leftOut() const noexcept;

    /// The texts of the files without a place on the device, for the kinds that are sent.
    [[nodiscard]] std::vector<UnstoredText> unstoredTexts() const;

    /// Whether there is a plan to check the result against.
    [[nodiscard]] bool isPlanned() const noexcept { return snapshot != nullptr; }
};

/// The error for a device that is locked.
[[nodiscard]] gps::Error deviceInUse(const std::string& device);

[[nodiscard]] PreparedSend prepareSend(ChosenDevice device, SendRequest request);

/// How many bytes a plan would write.
[[nodiscard]] std::uint64_t plannedBytes(const gps::SendPlan& plan) noexcept;

/// How many files a plan would write.
[[nodiscard]] std::size_t plannedWrites(const gps::SendPlan& plan) noexcept;

} // namespace host
