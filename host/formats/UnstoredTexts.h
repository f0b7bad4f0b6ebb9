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

    /// Adds a segment that has more than its points.
    void addSegment() { ++lost_[kSegmentTexts][kOthers]; }

    /// Adds a child of the root element that is not a record: its metadata, or a text about the
    /// whole file as GPX 1.0 has it.
    void addOfFile(const pugi::xml_node& element);

    /// Adds times whose fractions of a second were left out.
    void addFractions(std::size_t times) { fractions_ += times; }

    /// Adds the counts for receivers to those of earlier files.
    void addTo(std::vector<UnstoredText>& unstored) const;

    /// What records lack: a part of a sentence, such as "the links of 2 waypoints"; empty if they
    /// lack nothing.
    [[nodiscard]] std::string lostText() const;

    /// Of that, what the counts for receivers do not have.
    [[nodiscard]] std::string unsentText() const;

private:
    enum Noun : std::size_t {
        kWaypointTexts,
        kGeocacheTexts,
        kRouteTexts,
        kRoutePointTexts,
        kTrackTexts,
        kSegmentTexts,
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

    static constexpr std::size_t kFileFields = 7;

    void add(const pugi::xml_node& element, Noun noun);
    void addFileValue(const pugi::xml_node& element);
    [[nodiscard]] std::string fileText() const;
    [[nodiscard]] std::string lostText(std::size_t firstField) const;

    Counts unstored_{}; // by receivers
    Counts lost_{};     // by records
    std::array<bool, kFileFields> ofFile_{};
    std::size_t fractions_ = 0;
};

} // namespace host
