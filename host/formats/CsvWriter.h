// SPDX-License-Identifier: MIT
// CsvWriter: writes records as tables for spreadsheets, while they arrive. One thread at a time.
// Source of the format: RFC 4180.

#pragma once

#include "host/files/Output.h"
#include "host/files/SectionedOutput.h"
#include "host/formats/CollectionWriter.h"
#include "host/points/GlobeFilter.h"
#include "host/points/Points.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace host {

/// A table for each kind of record that there is: waypoints, geocaches, route points and track
/// points. Each begins with its own header, and the first column of each row names the kind.
/// A track's segments are numbered from 1. Coordinates are in degrees, elevations in metres, times
/// in UTC and in the local time of this computer.
class CsvWriter final : public CollectionWriter {
public:
    /// @param spoolFolder  where temporary files are made
    CsvWriter(Output& output, const std::string& spoolFolder);

    [[nodiscard]] std::string remark() const override { return globe_.remark(); }

private:
    enum Table : std::size_t { kWaypointTable, kGeocacheTable, kRouteTable, kTrackTable, kTables };

    void wayPoint(const gps::GPSPoint& point, const gps::Dictionary& record) override;
    void beginRoute(const gps::Dictionary& route) override;
    void routePoint(const gps::GPSPoint& point, const gps::Dictionary& record) override;
    void endRoute() override {}
    void beginTrack(const gps::Dictionary& track) override;
    void trackPoint(const gps::GPSPoint& point) override;
    void newSegment() override;
    void endTrack() override {}
    [[nodiscard]] std::optional<gps::Error> finish() override;

    [[nodiscard]] Output& beginRow(Table table);
    void writePosition(Output& out, const gps::GPSPoint& point);

    Output& output_;
    SectionedOutput sections_;
    std::array<bool, kTables> hasHeader_{};
    std::string collection_;   // the cells of the open route, or of the track's open segment
    std::string track_;        // the name of the open track, as a cell
    std::int32_t segment_ = 0; // of the open track, from 1
    TimestampText times_;
    GlobeFilter globe_;
};

} // namespace host
