// SPDX-License-Identifier: MIT
// MapRecords: the records as the map draws them. Made once, by a worker; then the thread that
// paints is the only one that asks for lines, and any may read the rest.

#pragma once

#include "host/formats/SymbolPictures.h"
#include "host/records/RecordKind.h"
#include "host/records/RecordSet.h"
#include "host/window/map/MapPath.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace host {

struct MapRecords {
    /// Its colour is counted by its index.
    struct Path {
        MapPath path;
        bool isRoute = false;
    };
    struct Point {
        MapPosition position;
        std::size_t record = 0; ///< its index among the points of the records
        const SymbolPicture* picture = nullptr;
        bool isGeocache = false;
        bool isFound = false; ///< a geocache
    };

    std::shared_ptr<const RecordSet> records{};
    std::vector<Path> paths{};   ///< one of each track, then of each route
    std::vector<Point> points{}; ///< those with valid coordinates, in the order of the records
    Extent extent{};             ///< of all
    std::size_t unseen = 0;      ///< records without valid coordinates
    std::size_t beyond = 0;      ///< records that are nearer to a pole than the map shows

    [[nodiscard]] RecordRef pathRecord(std::size_t path) const;
    [[nodiscard]] Extent extentOf(const RecordRef& record) const;
};

/// Takes time with millions of points. [any]
[[nodiscard]] std::shared_ptr<MapRecords> mapRecordsOf(std::shared_ptr<const RecordSet> records);

/// A record's name; empty if it has none.
/// @param most  characters
[[nodiscard]] std::string nameOnMap(const RecordSet& records, const RecordRef& record,
                                    std::size_t most);

} // namespace host
