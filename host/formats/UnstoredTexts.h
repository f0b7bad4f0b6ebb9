// SPDX-License-Identifier: MIT
// UnstoredTexts: counts the values of GPX elements that have no place on a receiver, and those that
// have none in a record, for messages. Used by GpxReader. One thread at a time.

#pragma once

#include "host/formats/UnreadParts.h"

#include <gps/GPSPoint.h>
#include <gps/Value.h>

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace pugi {
class xml_node;
}

namespace host {

class UnstoredTexts {
public:
    void addWaypoint(const pugi::xml_node& element, bool isGeocache);
    void addDatesOf(const gps::Dictionary& geocache, const gps::GPSPoint& point);
    void addRoute(const pugi::xml_node& element);
    void addRoutePoint(const pugi::xml_node& element);
    void addTrack(const pugi::xml_node& element);
    void addTrackPoint(const pugi::xml_node& element);

    /// Adds the counts for receivers to those of earlier files.
    void addTo(std::vector<UnstoredText>& unstored) const;

    /// What records lack: a part of a sentence, such as "the links of 2 waypoints"; empty if they
    /// lack nothing.
    [[nodiscard]] std::string lostText() const;

private:
    enum Noun : std::size_t {
        kWaypointTexts,
        kGeocacheTexts,
        kRouteTexts,
        kRoutePointTexts,
        kTrackTexts,
        kTrackPointTexts,
        kNouns
    };
    enum Field : std::size_t {
        kComments,
        kDescriptions,
        kLinks,
        kTypes,
        kTextFields, // the first four; the next three are not for receivers
        kNumbers = kTextFields,
        kSources,
        kOthers,
        kTimes, // these two are of geocaches, and for receivers only
        kFound,
        kFields
    };
    using Counts = std::array<std::array<std::size_t, kFields>, kNouns>;

    void add(const pugi::xml_node& element, Noun noun);

    Counts unstored_{}; // by receivers
    Counts lost_{};     // by records
};

} // namespace host
