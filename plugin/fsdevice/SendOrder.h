// SPDX-License-Identifier: MIT
// SendOrder: what a send writes, and in which order. Used by the worker that sends and by the
// planning before it, so that both agree. Stateless. [any]

#pragma once

#include "../common/RecordKind.h"

#include <gps/GPSOutputReceiver.h>
#include <gps/Value.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace magellan {

/// The records of one kind that a send writes.
struct SendJob {
    RecordKind kind;
    gps::Value list; ///< an array, which is shared with the data if it is the same
    std::optional<std::string> folder; ///< absolute; nullopt: the receiver has no folder for the
                                       ///< kind, so nothing is written

    [[nodiscard]] const gps::Array& records() const noexcept { return *list.as<gps::Array>(); }
};

/// The path to name in messages about a job: the default file into which its records are merged or,
/// for tracks, which get one file each, their folder.
/// Precondition: the job has a folder.
[[nodiscard]] std::string targetOf(const SendJob& job);

/// The jobs between one `startSending:kind:extra:` and its `endSending:`.
struct SendBracket {
    std::string_view label;
    gps::TransferKind kind;
    std::vector<SendJob> jobs;
};

/// Returns the brackets of a send: tracks, then waypoints and geocaches, then routes. A key that
/// the data lacks has no bracket.
/// @param data     arrays of records under "track", "waypoint" and "route"
/// @param folders  the folder dictionary: folder key to folder name
/// @param volume   the receiver's root
[[nodiscard]] std::vector<SendBracket>
sendOrder(const gps::Dictionary& data, const gps::Dictionary& folders, const std::string& volume);

} // namespace magellan
