// SPDX-License-Identifier: MIT
// GpxWriter: events as a GPX 1.1 document, written as they come. One thread at a time.
// Source of the form: the GPX 1.1 schema, http://www.topografix.com/GPX/1/1, and for geocaches the
// cache 1.0 extension, http://www.groundspeak.com/cache/1/0.

#pragma once

#include "host/files/Output.h"
#include "host/formats/CollectionWriter.h"
#include "host/points/GlobeFilter.h"

#include <string>

namespace host {

/// A document has its waypoints first, then its routes, then its tracks. Several imported files
/// bring them mixed, so routes and tracks wait on the medium, not in memory, until the end.
class GpxWriter final : public CollectionWriter {
public:
    /// @param spoolFolder  where routes and tracks wait
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

    [[nodiscard]] bool makePoint(std::string_view element, const gps::GPSPoint& point,
                                 const gps::Dictionary& record);

    Output& output_;
    Spool routes_;
    Spool tracks_;
    std::string text_; // one element at a time
    GlobeFilter globe_;
    const gps::Dictionary plain_; // what a track point has besides its place
};

} // namespace host
