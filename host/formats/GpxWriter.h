// SPDX-License-Identifier: MIT
// GpxWriter: writes records as a GPX 1.1 document while they arrive. One thread at a time.
// Source of the format: the GPX 1.1 schema, http://www.topografix.com/GPX/1/1, and for geocaches
// the cache 1.0 extension, http://www.groundspeak.com/cache/1/0.

#pragma once

#include "host/files/Output.h"
#include "host/files/SectionedOutput.h"
#include "host/formats/CollectionWriter.h"
#include "host/formats/RecordOrigin.h"
#include "host/formats/XmlElements.h"
#include "host/points/Bounds.h"
#include "host/points/GlobeFilter.h"
#include "host/points/Points.h"

#include <optional>
#include <string>
#include <string_view>

namespace host {

/// GPX requires waypoints first, then routes, then tracks. A mounted receiver delivers them in that
/// order, but serial sessions and several imported files do not.
///
/// The metadata are the receiver, the time of the download, and the bounds of all points. The
/// bounds are known at the end, so they get a fixed place in a file; a stream lacks them. Routes
/// and tracks have the receiver or the file that they are from as their source.
class GpxWriter final : public CollectionWriter {
public:
    /// @param spoolFolder  where temporary files are made
    GpxWriter(Output& output, const std::string& spoolFolder, const RecordOrigin& origin = {});

    void sourceFile(std::string_view name) override { source_ = name; }
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

    void writeMetadata(const RecordOrigin& origin);
    void writeBounds();
    void beginCollection(Output& out, std::string_view tag, const gps::Dictionary& record);

    // Writes the start tag of a point, its elevation and its time.
    char* putPoint(char* at, std::string_view element, const gps::GPSPoint& point);

    // Writes a waypoint or a route point with its texts.
    void writePoint(Output& out, std::string_view element, const gps::GPSPoint& point,
                    const gps::Dictionary& record);

    Output& output_;
    SectionedOutput sections_;
    TimestampText times_;
    GlobeFilter globe_;
    Bounds bounds_;
    off_t boundsAt_ = 0; // the offset of their place in a file
    std::string source_; // of the routes and tracks that follow
};

} // namespace host
