// SPDX-License-Identifier: MIT
// What a path's points say together: how long it is, how much it climbs, how long one was on the
// move. Fed point by point, keeps a few numbers and no points. For the summary and the page. One
// thread at a time.

#pragma once

#include <gps/GPSPoint.h>

#include <cstdint>
#include <optional>

namespace host {

/// Whether a point's altitude can be an elevation: finite and within 100 km of the sea. [any]
[[nodiscard]] bool hasElevation(const gps::GPSPoint& point) noexcept;

/// The length of a path, point by point: great circles on a sphere of the Earth's mean radius,
/// 6371.0088 km. Source: the haversine formula (R. W. Sinnott, "Virtues of the Haversine", Sky &
/// Telescope 68, 1984); the radius R1 of IUGG, Moritz, "Geodetic Reference System 1980".
class PathLength {
public:
    /// A point that lies nowhere on the globe is passed over.
    void add(const gps::GPSPoint& point) noexcept;

    [[nodiscard]] double kilometres() const noexcept { return kilometres_; }

private:
    std::optional<gps::GPSPoint> last_;
    double kilometres_ = 0;
};

/// Metres up and metres down. A receiver's elevation wavers while one walks on the flat, so a turn
/// counts only once the elevation has gone 3 m back from its last high or low; then the whole way
/// between the two counts.
class Climb {
public:
    void add(double elevationMetres) noexcept;

    [[nodiscard]] double ascentMetres() const noexcept
    {
        return ascent_ + (heading_ == Heading::kUp ? high_ - low_ : 0);
    }
    [[nodiscard]] double descentMetres() const noexcept
    {
        return descent_ + (heading_ == Heading::kDown ? high_ - low_ : 0);
    }

private:
    enum class Heading { kNone, kUp, kDown };

    void turnUp(double elevation) noexcept;
    void turnDown(double elevation) noexcept;

    Heading heading_ = Heading::kNone;
    bool isEmpty_ = true;
    double low_ = 0; // the ends of the leg that is under way
    double high_ = 0;
    double ascent_ = 0; // of the legs that are done
    double descent_ = 0;
};

/// The time on the move: the sum of the times from each timed point to the next where the speed
/// over the ground is at least 0.2 m/s (0.7 km/h, a steep climb). What took more than 5 minutes is
/// a pause or lost reception; time that runs backward is none.
class MovingTime {
public:
    /// Precondition: the point lies on the globe and has a moment.
    void add(const gps::GPSPoint& point) noexcept;

    [[nodiscard]] std::int64_t seconds() const noexcept { return seconds_; }

private:
    std::optional<gps::GPSPoint> last_;
    std::int64_t seconds_ = 0;
};

/// All figures of one track. Points that lie nowhere on the globe are passed over.
class TrackFigures {
public:
    void add(const gps::GPSPoint& point) noexcept;

    [[nodiscard]] double kilometres() const noexcept { return length_.kilometres(); }

    /// The earliest and the latest moment, in seconds since 1970-01-01 UTC; none when no point has
    /// one.
    [[nodiscard]] std::optional<std::int64_t> first() const noexcept { return first_; }
    [[nodiscard]] std::optional<std::int64_t> last() const noexcept { return last_; }

    /// None without elevations. A receiver that had none wrote 0 in every point.
    [[nodiscard]] std::optional<double> ascentMetres() const noexcept;
    [[nodiscard]] std::optional<double> descentMetres() const noexcept;

    /// None when no point has a moment.
    [[nodiscard]] std::optional<std::int64_t> movingSeconds() const noexcept;

private:
    PathLength length_;
    Climb climb_;
    MovingTime moving_;
    bool hasElevations_ = false;
    std::optional<std::int64_t> first_;
    std::optional<std::int64_t> last_;
};

} // namespace host
