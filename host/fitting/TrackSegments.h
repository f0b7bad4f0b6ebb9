// SPDX-License-Identifier: MIT
// TrackSegments: what becomes of tracks that consist of several segments. Readers of files number
// the segments, and `send` fits them to devices, which store tracks without breaks. Stateless.
// [any]

#pragma once

#include <gps/Value.h>

#include <cstddef>
#include <string>
#include <vector>

namespace host {

/// The key of a segment's number, from 1, in a record that is one segment of a track.
inline constexpr char kSegmentKey[] = "segment";

enum class SegmentRule {
    kSplit, ///< each segment becomes a track
    kJoin,  ///< a track's segments become one track
};

/// A track that had several segments.
struct SegmentedTrack {
    std::string name; ///< empty if it has none
    std::size_t segments = 0;

    friend bool operator==(const SegmentedTrack& a, const SegmentedTrack& b) = default;
};

/// Appends a track to a list of records: one record for each segment that has points, numbered if
/// there are several, or one without points.
/// @param head  the record without its points
void appendTrack(gps::Array& tracks, const gps::Dictionary& head, std::vector<gps::Array> segments);

/// Applies a rule to the tracks of a data dictionary, and removes the numbers of their segments.
/// @param data  in which the segments of each track follow each other; changed in place
/// @return      the tracks that had several, in their order
[[nodiscard]] std::vector<SegmentedTrack> fitSegments(gps::Dictionary& data, SegmentRule rule);

} // namespace host
