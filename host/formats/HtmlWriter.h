// SPDX-License-Identifier: MIT
// HtmlWriter: what came as one self-contained page to look at, with a map, profiles and tables. One
// thread at a time. The page itself is under page/, for whoever edits it; this writes the data that
// it shows.

#pragma once

#include "host/files/Output.h"
#include "host/formats/CollectionWriter.h"
#include "host/points/GlobeFilter.h"
#include "host/points/TrackFigures.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// The data is a JSON object in a script element of the page:
///
///     {"waypoints":[PLACE,...],"geocaches":[PLACE,...],"note":S,
///      "routes":[{"name":S,"comment":S,"points":[PLACE,...],"kilometres":D},...],
///      "tracks":[{"name":S,"points":[I,I,I,I,...],"kilometres":D,"first":I,"last":I,"ascent":D,"descent":D,"moving":I},...]}
///
/// PLACE: {"name":S,"comment":S,"symbol":S,"at":[I,I,I,I]} and for a geocache its further fields.
/// Four numbers are a point: latitude and longitude in millionths of a degree, elevation in
/// decimetres, time in seconds; in a track each is the difference from the last of its own that was
/// not null. Null is what is not known. Texts are empty rather than missing.
///
/// No text of a device can end the script element or begin another one: "<", ">" and "&" are
/// escaped, control characters and such as turn a line around are replaced.
class HtmlWriter final : public CollectionWriter {
public:
    /// @param spoolFolder  where each kind waits until the end, since files bring the kinds mixed
    HtmlWriter(Output& output, const std::string& spoolFolder);

    [[nodiscard]] std::string remark() const override { return globe_.remark(); }

private:
    /// The elements of one array.
    struct List {
        explicit List(const std::string& spoolFolder) : spool(spoolFolder) {}

        Spool spool;
        bool isEmpty = true;
    };

    /// Where a track's four columns of numbers stand.
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
    void endTrack() override;
    [[nodiscard]] std::optional<gps::Error> finish() override;

    void separate(bool& isFirst);
    void move(std::string_view key, List& list);

    Output& output_;
    List wayPoints_;
    List geocaches_;
    List routes_;
    List tracks_;
    GlobeFilter globe_;
    std::string text_; // one element at a time

    // Of the route or the track that is open.
    bool isFirstPoint_ = true;
    PathLength routeLength_;
    TrackFigures figures_;
    Columns columns_;
};

} // namespace host
