// SPDX-License-Identifier: MIT
// GpxWriter: writes records as a GPX 1.1 document while they arrive. One thread at a time.
// Source of the format: the GPX 1.1 schema, http://www.topografix.com/GPX/1/1, and for geocaches
// the cache 1.0 extension, http://www.groundspeak.com/cache/1/0.

#pragma once

#include "host/files/Output.h"
#include "host/files/SectionedOutput.h"
#include "host/formats/CollectionWriter.h"
#include "host/points/GlobeFilter.h"
#include "host/points/Points.h"

#include <optional>
#include <string>
#include <string_view>

namespace host {

/// GPX requires waypoints first, then routes, then tracks. A mounted receiver delivers them in that
/// order, but serial sessions and several imported files do not.
class GpxWriter final : public CollectionWriter {
public:
    /// @param spoolFolder  where temporary files are made
    GpxWriter(Output& output, const std::string& spoolFolder);

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

    // Writes a waypoint or a route point with its texts.
    void writePoint(Output& out, std::string_view element, const gps::GPSPoint& point,
                    const gps::Dictionary& record);

    Output& output_;
    SectionedOutput sections_;
    TimestampText times_;
    GlobeFilter globe_;
};

} // namespace host
