// SPDX-License-Identifier: MIT
// GeoJsonWriter: events as a GeoJSON feature collection, written as they come. One thread at a
// time. Source of the form: RFC 7946.

#pragma once

#include "host/files/Output.h"
#include "host/formats/CollectionWriter.h"
#include "host/points/GlobeFilter.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// A feature a line of text, in the order in which the records came. Its properties are the
/// record's fields, and:
///
/// - "kind": "waypoint", "geocache", "route" or "track";
/// - "time": a point's moment, if it has one;
/// - "times" of a track, if any of its points has a moment: for each position its moment, or null;
/// - "points" of a route: for each position the fields of its record, or null.
///
/// A line across the date line is cut there; the positions at the cut have null. A line of a single
/// point is a Point, one without any has no geometry.
class GeoJsonWriter final : public CollectionWriter {
public:
    /// @param spoolFolder  where a line's positions wait: what sort of geometry they make shows at
    /// its end
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
    std::string text_; // one piece at a time
    GlobeFilter globe_;

    // The open line. Its details, one a position, go straight out, from the first position that has
    // one.
    std::string_view detailsName_;
    Spool coordinates_;
    std::size_t positions_ = 0;
    std::size_t parts_ = 1;
    bool hasDetails_ = false;
    std::optional<gps::GPSPoint> last_;
};

} // namespace host
