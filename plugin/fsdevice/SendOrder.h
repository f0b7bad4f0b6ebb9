// SPDX-License-Identifier: MIT
// SendOrder: what a send writes, and in which order; shared by the worker that does it and by the
// plan that tells it beforehand. Stateless: [any] thread.

#pragma once

#include <gps/GPSOutputReceiver.h>
#include <gps/Value.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace magellan {

enum class SendKind { kTracks, kWaypoints, kGeocaches, kRoutes };

/// Records of one kind and the folder that they go to; none where the receiver has no such folder:
/// nothing is written then.
struct SendJob {
    SendKind kind;
    gps::Array records;
    std::optional<std::string> folder;
};

/// The path that stands for a job in what is said of it: the default file that its kind is merged
/// into; for tracks, which get a file each, their folder. Precondition: the job has a folder.
[[nodiscard]] std::string targetOf(const SendJob& job);

/// What a host sees as one sending.
struct SendBracket {
    std::string_view label;
    gps::TransferKind kind;
    std::vector<SendJob> jobs;
};

/// Tracks, then waypoints with the geocaches among them, then routes, each if the data holds it.
/// @param data     "track", "waypoint", "route": arrays of records
/// @param folders  folder key to folder name
/// @param volume   the receiver's root
[[nodiscard]] std::vector<SendBracket>
sendOrder(const gps::Dictionary& data, const gps::Dictionary& folders, const std::string& volume);

} // namespace magellan
