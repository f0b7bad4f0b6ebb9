// SPDX-License-Identifier: MIT
// Finds records of a send that none of the written files holds. Works from the plan: once each file
// has been compared with it, no file needs to be read again. Stateless. [any]

#pragma once

#include "host/transfer/RecordCounts.h"

#include <gps/GPSFileDevice.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// A record that was sent and is not on the device.
struct MissingRecord {
    std::string_view kind; ///< "waypoint", "geocache", "route", "route point", "track point" or
                           ///< "track"
    std::optional<std::string> name;
    std::size_t index = 0; ///< in its list in the data; of a point, that of its route or track

    /// Whether it is a point of a route or track.
    [[nodiscard]] bool isPoint() const noexcept { return kind.ends_with(" point"); }

    /// The key of that list.
    [[nodiscard]] std::string_view listKey() const noexcept
    {
        return kind.starts_with("track")   ? "track"
               : kind.starts_with("route") ? "route"
                                           : "waypoint";
    }
};

/// Counts missing records with their points. Points that are missing alone do not count.
/// @param data  that they are missing of
[[nodiscard]] RecordCounts countMissing(const std::vector<MissingRecord>& missing,
                                        const gps::Dictionary& data);

/// Decodes the planned files and looks for each record: a waypoint or geocache by its name and all
/// that the device stores of it, a route by its name and what the device stores of its points, in
/// their order, and track points by their positions, each as often as it is sent. Of a route that
/// differs, the points are named that it has nowhere.
/// @param data    the records to send, with names and texts as the device stores them
/// @param device  decodes the files
/// @return        the records that are in none of them, in the order of the data
[[nodiscard]] std::vector<MissingRecord> missingRecords(const gps::Dictionary& data,
                                                        const gps::SendPlan& plan,
                                                        const gps::GPSFileDevice& device);

/// The tracks that the plan has no file for, because no name is free. Tracks are planned in order.
/// Finds nothing if a file cannot be written: its records are not sent.
[[nodiscard]] std::vector<MissingRecord> unplannedTracks(const gps::Dictionary& data,
                                                         const gps::SendPlan& plan);

/// The same before a send: what it would report. A track without a file is one record.
/// Finds nothing if a file cannot be written.
[[nodiscard]] std::vector<MissingRecord> unplannedRecords(const gps::Dictionary& data,
                                                          const gps::SendPlan& plan,
                                                          const gps::GPSFileDevice& device);

} // namespace host
