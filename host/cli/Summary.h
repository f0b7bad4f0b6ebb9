// SPDX-License-Identifier: MIT
// Summary: what a download brought, as a table for people. A writer for the standard output. One
// thread at a time.

#pragma once

#include "host/base/Table.h"
#include "host/files/Output.h"
#include "host/formats/CollectionWriter.h"
#include "host/points/TrackFigures.h"

#include <gps/GPSPoint.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

struct SummaryRow {
    std::string kind{};
    std::string name{};
    std::size_t points = 0;
    std::optional<std::int64_t> first{}; ///< earliest and latest timestamp
    std::optional<std::int64_t> last{};
    std::optional<double> kilometres{};
    std::string_view firstZone{}; ///< of the clocks that show `first`; empty for UTC
    std::string_view lastZone{};
    std::string where{}; ///< its first point with valid coordinates, in words
    bool isLocated = false;
};

/// The table has a row for all waypoints, one for all geocaches, one for each route and each track,
/// and one for the totals; a list has one for each waypoint and geocache, too. The total length is
/// that of the tracks, since routes are only planned. Times are those of the place where a record
/// begins, unless UTC is requested. Jumps within tracks are named below the table. All is printed
/// by close().
class Summary final : public CollectionWriter {
public:
    enum class Rows {
        kCollections, ///< waypoints and geocaches are counted
        kAll,         ///< each record has a row
    };

    enum class Clock { kLocal, kUtc };

    static constexpr std::size_t kMostJumps = 3; ///< named one by one

    explicit Summary(Output& output, Rows rows = Rows::kCollections, Clock clock = Clock::kLocal)
        : output_(output), rows_(rows), clock_(clock)
    {}

    /// The row of each record so far; without kAll, of each route and track.
    [[nodiscard]] const std::vector<SummaryRow>& records() const noexcept { return records_; }

private:
    using Row = SummaryRow;

    void wayPoint(const gps::GPSPoint& point, const gps::Dictionary& record) override;
    void beginRoute(const gps::Dictionary& route) override;
    void routePoint(const gps::GPSPoint& point, const gps::Dictionary& record) override;
    void endRoute() override;
    void beginTrack(const gps::Dictionary& track) override;
    void trackPoint(const gps::GPSPoint& point) override;
    void newSegment() override;
    void endTrack() override;
    [[nodiscard]] std::optional<gps::Error> finish() override;

    void begin(std::string kind, const gps::Dictionary& collection);
    void add(const gps::GPSPoint& point);
    void end();
    void locate(Row& row, const gps::GPSPoint& point) const;
    void noteJump(const gps::GPSPoint& point);
    [[nodiscard]] Row total() const;
    [[nodiscard]] Table emptyTable() const;
    [[nodiscard]] std::vector<std::string> textsOf(const Row& row) const;
    [[nodiscard]] std::string jumpText() const;

    void addRecord(std::string kind, const gps::GPSPoint& point, const gps::Dictionary& record);

    Output& output_;
    Rows rows_;
    Clock clock_;
    Row wayPoints_{.kind = "Waypoints"};
    Row geocaches_{.kind = "Geocaches"};
    std::vector<Row> records_; // the last one may still get points
    PathLength length_;
    std::optional<gps::GPSPoint> lastFix_; // of the open track, if it has a timestamp
    std::vector<std::string> jumps_;       // the first, in words
    std::size_t moreJumps_ = 0;
};

} // namespace host
