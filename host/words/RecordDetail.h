// SPDX-License-Identifier: MIT
// What a list of records says about one of them, in a line or in full. Stateless. [any]

#pragma once

#include "host/records/RecordRow.h"
#include "host/records/RecordSet.h"
#include "host/words/FigureText.h"

#include <gps/GPSPoint.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// How a user wants to see figures and times.
struct Presentation {
    UnitSystem units = UnitSystem::kMetric;
    bool isUtc = false; ///< otherwise, times are those of the place

    friend bool operator==(const Presentation&, const Presentation&) noexcept = default;
};

struct DetailLine {
    std::string label{};
    std::string value{}; ///< never empty; one line, safe to show
};

/// The name, safe to show, or what the list calls a record without one.
[[nodiscard]] std::string rowName(const RecordRow& row);

/// "Track without a name", or likewise for another kind.
[[nodiscard]] std::string unnamedText(RecordKind kind, bool isGeocache);

/// "Track", "Route", "Waypoint" or "Geocache".
[[nodiscard]] std::string_view kindName(const RecordRow& row);

/// "2008-08-11 08:15 · 5.41 km · 1 h 12 min · 120 m up", or "Waypoint · Campground".
[[nodiscard]] std::string rowDetail(const RecordSet& records, const RecordRow& row,
                                    const Presentation& presentation);

/// All that is known about a record. Precondition: the row is one of these records.
[[nodiscard]] std::vector<DetailLine> recordDetails(const RecordSet& records, const RecordRow& row,
                                                    const Presentation& presentation);

/// The time zone in which times of a place are shown; empty for UTC.
[[nodiscard]] std::string_view shownZone(const std::optional<gps::GPSPoint>& position,
                                         const Presentation& presentation);

/// "2008-08-11 08:15:48 Auckland time", or "... UTC".
/// Precondition: `hasTimestamp` holds for a point with this time.
[[nodiscard]] std::string timeText(std::int64_t time, std::string_view zone);

} // namespace host
