// SPDX-License-Identifier: MIT
// Checks what a send did, since a driver's worker reports only which kinds it has sent. Used by
// performSend(). Stateless. [any]

#pragma once

#include "host/operations/Operation.h"

#include <gps/GPSFileDevice.h>

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// One planned file after a send.
struct SentFile {
    enum class Result {
        kWritten,        ///< holds exactly what was planned
        kRenamed,        ///< what was planned is in another new file: see RenamedTracks
        kAlsoChanged,    ///< holds all planned records, and what another program changed meanwhile
        kMissing,        ///< does not exist
        kUnreadable,     ///< cannot be read, so it may hold anything of these
        kDifferent,      ///< holds something else
        kPutBack,        ///< had lost records of the device, and holds what it held before the send
        kLost,           ///< has lost records of the device, and could not be put back
        kBlocked,        ///< could not be written, as the plan said
        kNothingToWrite, ///< was not to be written, as the plan said
    };

    std::string path; ///< as planned
    Result result;
    std::size_t lostRecords = 0;            ///< kPutBack, kLost: how many were lost
    std::optional<gps::Error> writeError{}; ///< kLost: why the file could not be put back
    std::string writtenPath{};              ///< kRenamed: the file that holds what was planned
    bool isAsBefore = false; ///< whether it is as it was before the send, and not as planned
};

/// The kinds of records in a data dictionary, in the order in which they are sent.
[[nodiscard]] std::vector<gps::TransferKind> kindsIn(const gps::Dictionary& data);

/// Reads each file that was to be written and compares it with the plan, byte for byte.
/// @param folders  those of the device before the send. Of a file in one that is gone, nothing is
///                 known: the medium was pulled out
[[nodiscard]] std::vector<SentFile> checkFiles(const gps::SendPlan& plan,
                                               const std::vector<std::string>& folders);

/// The result of each file that was to be written, for a device that cannot be read any more.
[[nodiscard]] std::vector<SentFile> unknownFiles(const gps::SendPlan& plan);

/// Whether a file that differs from the plan holds all planned records, those of the device among
/// them. Then another program has changed it during the send, and nothing is lost.
[[nodiscard]] bool holdsPlannedRecords(const gps::PlannedFile& planned,
                                       const gps::GPSFileDevice& device);

/// Puts a file back as it was before the send if it has lost records that the plan kept. A driver
/// that cannot read a file merges from nothing, and replaces it all the same.
/// @param before  the file before the send
/// @param file    in and out: the file's result
void putBackIfLost(const gps::DeviceFile& before, const gps::PlannedFile& planned,
                   const gps::GPSFileDevice& device, SentFile& file);

/// Whether a file that does not hold what was planned is as it was before the send.
/// @param before  the file before the send; null if it did not exist
[[nodiscard]] bool isAsBefore(const SentFile& file, const gps::DeviceFile* before);

/// Returns the data without the records of the kinds for which the plan has a file that cannot be
/// written: the driver would look at the file again, and must not write it after all.
/// @return  nullopt if there is no such file
[[nodiscard]] std::optional<gps::Dictionary> withoutBlocked(const gps::Dictionary& data,
                                                            const gps::SendPlan& plan);

/// Removes the records of some kinds: "tracks", "waypoints", "geocaches" or "routes". A list that
/// is left without records loses its key.
void removeKinds(gps::Dictionary& data, const std::set<std::string_view>& kinds);

/// Whether a driver logs an error that the plan already contains: a file to be created could not be
/// read before the send, or the present content of a file to be merged cannot be read.
[[nodiscard]] bool isExpected(const gps::Error& logged, const gps::SendPlan& plan);

} // namespace host
