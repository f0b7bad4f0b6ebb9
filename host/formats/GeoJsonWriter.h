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

namespace host {

/// Writes one feature per line of text, in the order of the records. A feature's properties are the
/// record's fields, and:
///
/// - "kind": "waypoint", "geocache", "route" or "track";
/// - "time": the timestamp of a point that has one;
/// - "times" of a track with at least one timestamp: an array with a timestamp or null per
/// position;
/// - "points" of a route: an array with the fields of each point's record, or null, per position.
///
/// A line that crosses the 180 degree meridian is cut there into a MultiLineString; the two
/// positions at the cut have null in "times" and "points". A line of one point becomes a Point, a
/// line without points has a null geometry.
class GeoJsonWriter final : public CollectionWriter {
public:
    /// @param spoolFolder  where a line's positions are kept until its end, which decides the type
    ///                     of its geometry
    GeoJsonWriter(Output& output, const std::string& spoolFolder);

    [[nodiscard]] std::string remark() const override { return globe_.remark(); }

private:
    void wayPoint(const gps::GPSPoint& point, const gps::Dictionary& record) override;
    void beginRoute(const gps::Dictionary& route) override;
    void routePoint(const gps::GPSPoint& point, const gps::Dictionary& record) override;
    void endRoute() override;
    void beginTrack(const gps::Dictionary& track) override;
    void trackPoint(const gps::GPSPoint& point) override;
    void endTrack() override;
    [[nodiscard]] std::optional<gps::Error> finish() override;

    void beginFeature();
    void beginLine(std::string_view kind, std::string_view detailsName,
                   const gps::Dictionary& record);
    void addToLine(const gps::GPSPoint& point);
    void addPosition(std::string_view separator, const gps::GPSPoint& point);
    void addDetail(std::string_view json);
    void addNoDetail();
    void endLine();

    Output& output_;
    bool hasFeatures_ = false;
    std::string text_; // reused for each piece of output
    TimestampText times_;
    GlobeFilter globe_;

    // The open line. Its details ("times" or "points") go straight to the output, starting at the
    // first position that has one; its coordinates wait in the spool.
    std::string_view detailsName_;
    Spool coordinates_;
    std::size_t positions_ = 0;
    std::size_t parts_ = 1;
    bool hasDetails_ = false;
    std::optional<gps::GPSPoint> last_;
};

} // namespace host
