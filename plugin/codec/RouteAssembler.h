// SPDX-License-Identifier: MIT
// RouteAssembler: assembles routes from the waypoint and route sentences of one file or serial
// session. A waypoint's record is shared by all route points that refer to it, so the memory that
// routes take is in proportion to their sentences. Not thread-safe. [any]

#pragma once

#include "RouteGaps.h"

#include <gps/GPSTransferAccount.h>
#include <gps/Value.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace gps {
class GPSOutputReceiver;
} // namespace gps

namespace magellan {

class SentenceFields;

/// A complete route.
struct AssembledRoute {
    gps::Dictionary info{}; ///< "name", "lastIndex" and, if it has one, "comment"
    std::vector<std::shared_ptr<const gps::Dictionary>>
        points{}; ///< waypoint records, with "point"
};

class RouteAssembler {
public:
    /// Keeps a waypoint for the routes that follow, in place of an earlier one of the same name. A
    /// waypoint without a name is not kept.
    /// @return  whether it is kept
    bool addWayPoint(const gps::Dictionary& extras, const gps::GPSPoint& point);

    /// How many waypoints are kept.
    [[nodiscard]] std::size_t wayPointCount() const noexcept { return waypoints_.size(); }

    /// Adds a route sentence. Records unknown points, and routes of which a sentence is missing.
    /// @param number  of the sentence in its file or phase
    /// @return        the route that the sentence completes
    /// @throws gps::RangeError  the sentence is truncated. Nothing has changed
    [[nodiscard]] std::optional<AssembledRoute>
    addSentence(const SentenceFields& fields, std::uint64_t number, gps::LineAccount& lines);

    /// Records the route that is not complete at the end of the file or phase.
    void finish(gps::LineAccount& lines) noexcept { gaps_.finish(lines); }

private:
    void addPoints(const SentenceFields& fields, std::uint64_t number, gps::LineAccount& lines);

    struct NameHash {
        using is_transparent = void; // so that a view finds a name
        std::size_t operator()(std::string_view name) const noexcept
        {
            return std::hash<std::string_view>{}(name);
        }
    };

    std::unordered_map<std::string, std::shared_ptr<const gps::Dictionary>, NameHash,
                       std::equal_to<>>
        waypoints_;        // by name
    AssembledRoute route_; // the one that is not complete yet

    RouteGaps gaps_;
};

/// Reports `newRoute:` and then `wayPoint:extra:` for each of the route's points.
void reportRoute(const AssembledRoute& route, gps::GPSOutputReceiver& status);

} // namespace magellan
