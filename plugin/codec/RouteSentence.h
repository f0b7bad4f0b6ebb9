// SPDX-License-Identifier: MIT
// Route sentences: a run of "$PMGNRTE" lines <-> one route. The lines refer by name to waypoints,
// which travel as sentences of their own. Used by the readers and writers of route files and by
// serial sessions. Stateless. [any]

#pragma once

#include <gps/Value.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace magellan {

class SentenceFields;

/// The first field of a route sentence.
inline constexpr std::string_view kRouteSentence = "PMGNRTE";

/// Reads one line of a route: `interpretRouteSentence:into:fromWaypoints:withInfo:`.
///
/// @param sentence   one line as read: "$", body, "*hh", optional line end
/// @param points     out: the records of the waypoints that the line names are appended, in order.
///                   An unknown name is logged and skipped. All mentions of a waypoint share its
///                   record, so the points take memory in proportion to the sentences
/// @param waypoints  waypoint records by name
/// @param info       in and out: "lastIndex", "name" and "comment" of the route so far. A gap in
///                   the sentence numbers is logged
/// @return           whether the line is the route's last one
/// @throws gps::RangeError  the body has fewer than 6 fields, an empty letter, or is a message
///                          without text. Nothing has changed
/// Source: NMEA 0183 proprietary sentence form.
[[nodiscard]] bool interpretRouteSentence(std::string_view sentence, gps::Array& points,
                                          const gps::Dictionary& waypoints, gps::Dictionary& info);

/// Where a sentence belongs in its route.
struct RoutePosition {
    std::int32_t total;    ///< of the route's sentences
    std::int32_t number;   ///< of this sentence, from 1
    std::string_view name; ///< of the route; a view into the sentence
};

/// Precondition: readRouteInfo() has accepted the sentence.
[[nodiscard]] RoutePosition routePosition(const SentenceFields& fields);

/// Reads everything but the points: "lastIndex", "name" and "comment". Logs a gap.
/// @return  whether the line is the route's last one
/// @throws gps::RangeError  as interpretRouteSentence(). Nothing has changed
[[nodiscard]] bool readRouteInfo(const SentenceFields& fields, gps::Dictionary& info);

/// Yields the names of the waypoints of a list, in order, as views into the sentence. Any other
/// sentence of a route has none.
class RoutePointNames {
public:
    /// Precondition: readRouteInfo() has accepted the sentence.
    explicit RoutePointNames(const SentenceFields& fields);

    [[nodiscard]] std::optional<std::string_view> next() noexcept;

private:
    std::string_view pairs_; // of name and icon; those that have not been read
};

/// Logs a point whose waypoint is not known.
void logUnknownPoint(std::string_view name);

/// Appends the records of the waypoints that a list names, as interpretRouteSentence() does.
/// @return  how many points are not known
/// Precondition: readRouteInfo() has accepted the sentence.
std::size_t appendRoutePoints(const SentenceFields& fields, gps::Array& points,
                              const gps::Dictionary& waypoints);

/// Writes a route: `makeRouteSentencesFromWaypointList:andInfo:`: lists of two waypoints each, then
/// the comment as a message.
/// @param list  waypoint records in route order: "name" (filtered, cut to 20 characters), "symbol"
/// @param info  "name" (the same), "comment" (filtered), "number" (1 if missing)
/// @return      sentences with their checksums, without line ends
[[nodiscard]] std::vector<std::string>
makeRouteSentencesFromWaypointList(const gps::Array& list, const gps::Dictionary& info);

} // namespace magellan
