// SPDX-License-Identifier: MIT
// HtmlWriter: writes the records as one self-contained HTML page with a map, profiles and tables.
// One thread at a time. The page itself is in host/page/; this class writes the data that it shows.

#pragma once

#include "host/files/Output.h"
#include "host/formats/CollectionWriter.h"
#include "host/formats/PageIcons.h"
#include "host/formats/RecordOrigin.h"
#include "host/points/Areas.h"
#include "host/points/GlobeFilter.h"
#include "host/points/TrackFigures.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace host {

enum class HtmlTable;

/// Writes tables for readers without scripts, and the data for the scripts, which show it instead.
///
/// The data is a JSON object in a script element of the page, with strings S, integers I and
/// decimal numbers D:
///
///     {"title":S,"receiver":S,"identifier":S,"made":I,"note":S,
///      "tiles":{"url":S,"attribution":S},
///      "areas":[{"place":S,"zone":S,"bounds":[I,I,I,I]},...],
///      "places":[{"name":S,"at":[I,I]},...],
///      "land":[{"bounds":[I,I,I,I],"unit":I,"outlines":[S,...]},...],
///      "icons":[{"symbols":[S,...],"path":S},...],
///      "waypoints":[POINT,...],
///      "geocaches":[POINT,...],
///      "routes":[{"name":S,"comment":S,"points":[POINT,...],"kilometres":D},...],
///      "tracks":[{"name":S,"points":[I,I,I,I,...],"breaks":[I,...],"kilometres":D,"first":I,
///                 "last":I,"ascent":D,"descent":D,"moving":I,"place":S,"zone":S},...]}
///
/// An area is a part of the world with points; those with most come first. Its "place" is where it
/// is in words, its "zone" the time zone, and its bounds are the western, southern, eastern and
/// northern one. An area across the 180th meridian has an eastern bound above it. "places" are the
/// towns around the areas. "land" has the outlines of the land within bounds, for the whole world
/// first and then for smaller parts in more detail: the longitude and the latitude of a point in
/// turn, in units of so many millionths of a degree from the south-western corner, then the
/// differences from point to point, each as appendDigits() writes it. Land and water alternate
/// where outlines lie within each other. "icons" are described in PageIcons.h, "tiles" in
/// PageTiles.h.
///
/// POINT is {"name":S,"comment":S,"symbol":S,"at":[I,I,I,I]}. A geocache also has "type", "owner",
/// "hint", "difficulty", "terrain", "placed" and "found", all strings.
///
/// A point's four numbers are its latitude and longitude in millionths of a degree, its elevation
/// in decimetres and its time in seconds since 1970-01-01 UTC. In a track, each is the difference
/// from the last number in the same column that is not null. Values that are not known are null;
/// texts are empty instead. The "breaks" are the indices of the points that begin a new segment, in
/// ascending order; a track of one segment lacks this member. Points without valid coordinates are
/// left out, and the note counts them.
///
/// No text from a device can end the script element or start another one: "<", ">" and "&" are
/// escaped, and control characters and those that change the direction of a line are replaced.
class HtmlWriter final : public CollectionWriter {
public:
    /// @param spoolFolder  holds temporary files for each kind until the end: a device's files mix
    /// the kinds, but the page lists each on its own
    HtmlWriter(Output& output, const std::string& spoolFolder, RecordOrigin origin);

    [[nodiscard]] std::string remark() const override { return globe_.remark(); }

private:
    /// The elements of one JSON array, and the rows of the table that shows them without scripts.
    struct List {
        explicit List(const std::string& spoolFolder) : spool(spoolFolder), rows(spoolFolder) {}

        Spool spool;
        Spool rows;
        bool isEmpty = true;
    };

    /// The last number in each of a track's columns that is not null.
    struct Columns {
        std::int64_t latitude = 0;
        std::int64_t longitude = 0;
        std::int64_t elevation = 0;
        std::int64_t time = 0;
    };

    void wayPoint(const gps::GPSPoint& point, const gps::Dictionary& record) override;
    void beginRoute(const gps::Dictionary& route) override;
    void routePoint(const gps::GPSPoint& point, const gps::Dictionary& record) override;
    void endRoute() override;
    void beginTrack(const gps::Dictionary& track) override;
    void trackPoint(const gps::GPSPoint& point) override;
    void newSegment() override;
    void endTrack() override;
    [[nodiscard]] std::optional<gps::Error> finish() override;

    void startElement(bool isFirst);
    void writeTables();
    void writeTable(HtmlTable table, List& list);
    void writeList(std::string_view key, List& list);

    Output& output_;
    RecordOrigin origin_;
    List wayPoints_;
    List geocaches_;
    List routes_;
    List tracks_;
    GlobeFilter globe_;
    Areas areas_;
    PageIcons icons_;
    std::string text_; // a buffer, to be used again for each element

    // The route or track being written.
    std::string name_;
    std::string comment_; // of the route
    std::size_t points_ = 0;
    std::string breaks_; // of the track: their indices, each with a comma behind it
    PathLength routeLength_;
    TrackFigures figures_;
    Columns columns_;
    std::optional<gps::GPSPoint> start_; // of the track
};

} // namespace host
