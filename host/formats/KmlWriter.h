// SPDX-License-Identifier: MIT
// KmlWriter: writes records as a KML 2.2 document while they arrive. One thread at a time.
// Source of the format: OGC KML 2.2 (OGC 07-147r2), http://www.opengis.net/kml/2.2.

#pragma once

#include "host/files/Output.h"
#include "host/formats/CollectionWriter.h"
#include "host/formats/KmlLine.h"
#include "host/points/GlobeFilter.h"

#include <optional>
#include <string>
#include <string_view>

namespace host {

/// The document has a folder for each kind of record that arrives: tracks, routes (each a folder
/// with its line and its points), waypoints, geocaches. Tracks, the bulk of the data, come first
/// and are written at once; the other folders are kept in temporary files until the end. KmlReader
/// reads all records back.
class KmlWriter final : public CollectionWriter {
public:
    /// @param spoolFolder  where the temporary files are made
    KmlWriter(Output& output, const std::string& spoolFolder);

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

    void makePlacemark(const gps::GPSPoint& point, const gps::Dictionary& record,
                       std::string_view style);

    /// One folder of the document. It is opened by its first record, so no folder is empty.
    struct Folder {
        std::string_view title;
        bool isBegun = false;

        void begin(Output& out);
        void end(Output& out) const;
    };

    Output& output_;
    Folder tracksFolder_{"Tracks"};
    Folder routesFolder_{"Routes"};
    Folder wayPointsFolder_{"Waypoints"};
    Folder geocachesFolder_{"Geocaches"};
    Spool routes_;
    Spool wayPoints_;
    Spool geocaches_;
    KmlLine line_;
    std::string text_; // the last element made
    std::string data_; // its extended data
    GlobeFilter globe_;
};

} // namespace host
