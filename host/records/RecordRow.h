// SPDX-License-Identifier: MIT
// RecordRow: what a list of records sorts and searches by. Plain values, computed once for a
// RecordSet; that can take a second for millions of points. [any]

#pragma once

#include "host/records/RecordKind.h"
#include "host/records/RecordSet.h"

#include <gps/GPSPoint.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

struct RecordRow {
    RecordKind kind = RecordKind::kPoint;
    std::size_t index = 0; ///< in the list of its kind
    bool isGeocache = false;
    std::string name{};
    std::string searched{};                  ///< name and details as searchKey() makes them
    std::optional<gps::GPSPoint> position{}; ///< its first point with valid coordinates
    std::optional<std::int64_t> first{};     ///< earliest and latest timestamp
    std::optional<std::int64_t> last{};
    std::optional<double> metres{};  ///< the length of a track or a route
    std::optional<double> ascent{};  ///< metres
    std::optional<double> descent{}; ///< metres
    std::size_t points = 1;
};

/// One row for each record: tracks, routes, then points.
[[nodiscard]] std::vector<RecordRow> recordRows(const RecordSet& records);

/// A text without the differences that a search ignores: upper and lower case, accents and
/// compatible forms.
[[nodiscard]] std::string searchKey(std::string_view text);

} // namespace host
