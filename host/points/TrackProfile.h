// SPDX-License-Identifier: MIT
// TrackProfile: heights, speeds and slopes along a track, and the figures of a stretch of it. The
// HTML page computes the same: host/page/model/rates.js and figures.js; tests/host/points/
// stretches.txt holds both to the same numbers. Unchanged once it is made. [any]

#pragma once

#include <gps/GPSPoint.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

namespace host {

/// A value along a track that is not known.
inline constexpr double kUnknownValue = std::numeric_limits<double>::quiet_NaN();

/// The points without valid coordinates are left out; indices count the others.
class TrackProfile {
public:
    TrackProfile() = default;

    /// @param points    must outlive the profile
    /// @param segments  the indices at which a new segment begins, ascending: no way leads there
    TrackProfile(std::span<const gps::GPSPoint> points, std::span<const std::size_t> segments);

    TrackProfile(const TrackProfile&) = delete;
    TrackProfile& operator=(const TrackProfile&) = delete;
    TrackProfile(TrackProfile&&) = default;
    TrackProfile& operator=(TrackProfile&&) = default;

    [[nodiscard]] std::size_t size() const noexcept { return points_.size(); }
    [[nodiscard]] const gps::GPSPoint& point(std::size_t i) const noexcept { return points_[i]; }

    /// The way from the start, in metres; never falls.
    [[nodiscard]] std::span<const double> metres() const noexcept { return metres_; }
    [[nodiscard]] double length() const noexcept { return metres_.empty() ? 0 : metres_.back(); }

    /// Metres above sea level. Unknown for all points of a track that has 0 in every point.
    [[nodiscard]] double elevation(std::size_t i) const noexcept;

    /// Seconds since 1970-01-01 UTC.
    [[nodiscard]] double time(std::size_t i) const noexcept;

    /// Metres per second, averaged over about 30 seconds: from one fix to the next, a receiver's
    /// positions scatter too much. Unknown at points without a time, and at those whose time is
    /// not later than that of the points before them.
    [[nodiscard]] double speed(std::size_t i) const noexcept { return speeds_[i]; }

    /// Metres of elevation per metre of way, averaged over about 100 metres. Unknown at points
    /// without an elevation, and where the track stands still.
    [[nodiscard]] double slope(std::size_t i) const noexcept { return slopes_[i]; }

    /// The first points of all segments but the first, ascending.
    [[nodiscard]] std::span<const std::size_t> breaks() const noexcept { return breaks_; }

    /// Whether there are two times, and so a time axis.
    [[nodiscard]] bool hasDuration() const noexcept { return hasDuration_; }

    /// For each point, the seconds since the first time; never falls. A point without a time, or
    /// with an earlier one than those before it, is where the point before it is.
    [[nodiscard]] std::vector<double> elapsedSeconds() const;

    /// The highest of the speeds from one point to another, averaged over about 10 seconds, without
    /// the fastest hundredth: a single bad fix is not the top. Unknown if no speed is known.
    /// Precondition: from <= to < size().
    [[nodiscard]] double topSpeed(std::size_t from, std::size_t to) const;

private:
    void keepValid(std::span<const gps::GPSPoint> points, std::span<const std::size_t> segments);
    void measure();
    void noteTimes();

    std::vector<gps::GPSPoint> valid_; // empty if all points are
    std::span<const gps::GPSPoint> points_;
    std::vector<std::size_t> breaks_;
    std::vector<double> metres_;
    // Nobody sees more than seven digits of these.
    std::vector<float> speeds_;
    std::vector<float> topSpeeds_;
    std::vector<float> slopes_;
    bool hasElevations_ = false;
    bool hasDuration_ = false;
};

/// The figures of a part of a track, in metres, seconds and metres per second.
struct StretchFigures {
    double metres = 0;
    double seconds = kUnknownValue; ///< from the earliest time to the latest
    double moving = kUnknownValue;  ///< seconds: MovingTime
    double ascent = kUnknownValue;
    double descent = kUnknownValue;
    double lowest = kUnknownValue;
    double highest = kUnknownValue;
    double slope = kUnknownValue; ///< from the first elevation to the last
    double average = kUnknownValue;
    double movingAverage = kUnknownValue;
    double top = kUnknownValue;
};

/// The figures of the points from one index to another, both included. A profile without points has
/// the figures of nothing. Precondition: from <= to < size(), or size() is 0.
[[nodiscard]] StretchFigures stretchFigures(const TrackProfile& profile, std::size_t from,
                                            std::size_t to);

/// The index of the value that is nearest to a position; the last one for a position past the end.
/// Precondition: there are values, and they never fall.
[[nodiscard]] std::size_t indexNearest(std::span<const double> values, double position) noexcept;

} // namespace host
