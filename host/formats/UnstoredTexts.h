// SPDX-License-Identifier: MIT
// UnstoredTexts: counts the texts of GPX elements that have no place in a record, for messages.
// Used by GpxReader. One thread at a time.

#pragma once

#include "host/formats/UnreadParts.h"

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

namespace pugi {
class xml_node;
}

namespace host {

class UnstoredTexts {
public:
    void addWaypoint(const pugi::xml_node& element, bool isGeocache);
    void addRoute(const pugi::xml_node& element);
    void addRoutePoint(const pugi::xml_node& element);
    void addTrack(const pugi::xml_node& element);

    /// Adds the counts to those of earlier files.
    void addTo(std::vector<UnstoredText>& unstored) const;

private:
    enum Noun : std::size_t {
        kWaypointTexts,
        kGeocacheTexts,
        kRouteTexts,
        kRoutePointTexts,
        kTrackTexts,
        kNouns
    };
    enum Field : std::size_t { kComments, kDescriptions, kLinks, kTypes, kFields };

    void add(const pugi::xml_node& element, Noun noun);

    std::array<std::array<std::size_t, kFields>, kNouns> counts_{};
};

} // namespace host
