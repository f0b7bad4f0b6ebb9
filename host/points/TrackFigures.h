// SPDX-License-Identifier: MIT
// TrackFigures and its parts: length, ascent, descent and moving time of a track, for the summary
// table and the HTML page. Points are added one by one and are not stored. One thread at a time.

#pragma once

#include <gps/GPSPoint.h>

#include <cstdint>
#include <optional>

namespace host {

/// Whether a point's altitude is a plausible elevation: finite and within 100 km of sea level.
/// [any]
[[nodiscard]] bool hasElevation(const gps::GPSPoint& point) noexcept;

/// A point as distances need it: each cosine is needed for two of them.
struct PlaceOnSphere {
    explicit PlaceOnSphere(const gps::GPSPoint& point) noexcept;

    double latitude;  ///< radians
    double cosine;    ///< of the latitude
    double longitude; ///< degrees
};

/// The great-circle distance on a sphere of the Earth's mean radius, 6371.0088 km. [any]
/// Source: the haversine formula (R. W. Sinnott, "Virtues of the Haversine", Sky & Telescope 68,
/// 1984); the radius R1 of IUGG, Moritz, "Geodetic Reference System 1980".
[[nodiscard]] double kilometresBetween(const PlaceOnSphere& a, const PlaceOnSphere& b) noexcept;

/// The same for points; 0 if one of them has no valid coordinates. [any]
[[nodiscard]] double kilometresBetween(const gps::GPSPoint& a, const gps::GPSPoint& b) noexcept;

/// The length of a path: the sum of the great-circle distances between its points.
class PathLength {
public:
    /// A point without valid coordinates is ignored.
    /// @return  the distance from the point before, in kilometres; 0 if there is none
    double add(const gps::GPSPoint& point) noexcept;

    /// No way leads from the last point to the next one.
    void breakHere() noexcept { last_.reset(); }

    [[nodiscard]] double kilometres() const noexcept { return kilometres_; }

private:
    std::optional<PlaceOnSphere> last_;
    double kilometres_ = 0;
};

/// Total ascent and descent. A receiver's elevation wavers even on the flat, so a change of
/// direction counts only after the elevation has moved 3 m from its last high or low. The whole
/// difference between high and low counts then.
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
    double low_ = 0; // of the current leg
    double high_ = 0;
    double ascent_ = 0; // of all earlier legs
    double descent_ = 0;
};

/// Moving time: the sum of the intervals between consecutive points in which the average speed over
/// ground is at least 0.2 m/s (0.7 km/h, a steep climb). An interval of more than 5 minutes is a
/// pause or lost reception, and does not count. An interval in which time runs backward does not
/// count either.
class MovingTime {
public:
    /// Precondition: the point has valid coordinates and a timestamp.
    void add(const gps::GPSPoint& point) noexcept;

    /// The same, if the distance from the point before is known.
    void add(const gps::GPSPoint& point, double kilometres) noexcept;

    /// The interval between the last point and the next one does not count.
    void breakHere() noexcept { hasLast_ = false; }

    [[nodiscard]] std::int64_t seconds() const noexcept { return seconds_; }

private:
    gps::GPSPoint last_;
    bool hasLast_ = false;
    std::int64_t seconds_ = 0;
};

/// All figures of one track. Points without valid coordinates are ignored.
class TrackFigures {
public:
    void add(const gps::GPSPoint& point) noexcept;

    /// A new segment begins: neither length nor time counts between the last point and the next
    /// one. The climb does: a receiver that was carried on has climbed.
    void breakHere() noexcept;

    [[nodiscard]] double kilometres() const noexcept { return length_.kilometres(); }

    /// The earliest and the latest timestamp, in seconds since 1970-01-01 UTC; nullopt if no point
    /// has one.
    [[nodiscard]] std::optional<std::int64_t> first() const noexcept { return first_; }
    [[nodiscard]] std::optional<std::int64_t> last() const noexcept { return last_; }

    /// nullopt if the track has no elevations. A receiver without a height fix writes 0 for every
    /// point.
    [[nodiscard]] std::optional<double> ascentMetres() const noexcept;
    [[nodiscard]] std::optional<double> descentMetres() const noexcept;

    /// nullopt if no point has a timestamp.
    [[nodiscard]] std::optional<std::int64_t> movingSeconds() const noexcept;

private:
    PathLength length_;
    Climb climb_;
    MovingTime moving_;
    bool isLastTimed_ = false;
    bool hasElevations_ = false;
    std::optional<std::int64_t> first_;
    std::optional<std::int64_t> last_;
};

} // namespace host
