// SPDX-License-Identifier: MIT
// GeoJsonWriter: writes records as a GeoJSON feature collection while they arrive. One thread at a
// time. Source of the format: RFC 7946.

#pragma once

#include "host/files/Output.h"
#include "host/formats/CollectionWriter.h"
#include "host/points/GlobeFilter.h"
#include "host/points/Points.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// Writes one feature per line of text, in the order of the records. A feature's properties are the
/// record's fields, and:
///
/// - "kind": "waypoint", "geocache", "route" or "track";
/// - "time": the timestamp of a point that has one;
/// - "coordTimes" of a track with at least one timestamp: an array with a timestamp or null per
/// position;
/// - "points" of a route: an array with the fields of each point's record, or null, per position.
///
/// A line that crosses the 180 degree meridian is cut there into a MultiLineString, and so is a
/// track of several segments. "coordTimes" and "points" then are arrays of such arrays, with null
/// for the two positions at the cut. The position of a segment of one point is repeated, because a
/// part has at least two, and the second one has null. A line of one point becomes a Point, a line
/// without points has a null geometry.
///
/// Altitudes are rounded to millimetres: those that a receiver has in feet would have long
/// fractions in metres.
class GeoJsonWriter final : public CollectionWriter {
public:
    /// @param spoolFolder  where a line is kept until its end, which decides the type of its
    ///                     geometry
    GeoJsonWriter(Output& output, const std::string& spoolFolder);

    [[nodiscard]] std::string remark() const override { return globe_.remark(); }

private:
    void wayPoint(const gps::GPSPoint& point, const gps::Dictionary& record) override;
    void beginRoute(const gps::Dictionary& route) override;
    void routePoint(const gps::GPSPoint& point, const gps::Dictionary& record) override;
    void endRoute() override;
    void beginTrack(const gps::Dictionary& track) override;
    void trackPoint(const gps::GPSPoint& point) override;
    void newSegment() override;
    void endTrack() override;
    [[nodiscard]] std::optional<gps::Error> finish() override;

    void beginFeature();
    void beginLine(std::string_view kind, std::string_view detailsName,
                   const gps::Dictionary& record);
    void addToLine(const gps::GPSPoint& point);
    void beginPart();
    void completePart();
    void addPosition(const gps::GPSPoint& point);
    [[nodiscard]] std::string_view separatorBefore(std::size_t position) const;
    [[nodiscard]] Output& detailsOutput() { return output_.canInsert() ? output_ : details_; }
    void addDetail(std::string_view json);
    void beginDetails(Output& out);
    void endDetails(bool isCut);
    void addNoDetail();
    void endLine();

    Output& output_;
    bool hasFeatures_ = false;
    std::string text_; // reused for each piece of output
    TimestampText times_;
    GlobeFilter globe_;

    // The open line. Its details ("coordTimes" or "points") start at the first position that has
    // one. Only the end of the line shows whether it is cut, so its coordinates wait in a spool,
    // and so do the details if nothing can be changed in the output any more.
    std::string_view detailsName_;
    Spool details_;
    off_t bracketAt_ = 0; // in the output of the details
    Spool coordinates_;
    std::size_t positions_ = 0;
    std::vector<std::size_t> cuts_; // the first position of each part but the first
    bool isBroken_ = false;         // before the next point
    bool hasDetails_ = false;
    std::optional<gps::GPSPoint> last_;
};

} // namespace host
