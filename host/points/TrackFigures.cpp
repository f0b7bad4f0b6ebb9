// SPDX-License-Identifier: MIT
// Each figure is computed by a class of its own, in constant memory.

#include "host/points/TrackFigures.h"

#include "host/points/Points.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace host {
namespace {

constexpr double kEarthRadius_km = 6371.0088;
constexpr double kHighest_m = 100'000;
constexpr double kTurn_m = 3;
constexpr double kSlowest_m_per_s = 0.2;
constexpr std::int64_t kLongestStep_s = 300;

double radians(double degrees)
{
    return degrees * (std::numbers::pi / 180);
}

// Stays exact for points that are metres apart, where the law of cosines loses most digits.
double haversine(double angle)
{
    return std::pow(std::sin(angle / 2), 2);
}

} // namespace

bool hasElevation(const gps::GPSPoint& point) noexcept
{
    return std::abs(point.altitude) <= kHighest_m; // false for NaN
}

PlaceOnSphere::PlaceOnSphere(const gps::GPSPoint& point) noexcept
    : latitude(radians(point.latitude)), cosine(std::cos(latitude)), longitude(point.longitude)
{}

double kilometresBetween(const PlaceOnSphere& a, const PlaceOnSphere& b) noexcept
{
    const double h = haversine(b.latitude - a.latitude) +
                     a.cosine * b.cosine * haversine(radians(b.longitude - a.longitude));
    // Rounding can take h past 1 for antipodes.
    return 2 * kEarthRadius_km * std::asin(std::sqrt(std::min(h, 1.0)));
}

double kilometresBetween(const gps::GPSPoint& a, const gps::GPSPoint& b) noexcept
{
    return isOnGlobe(a) && isOnGlobe(b) ? kilometresBetween(PlaceOnSphere{a}, PlaceOnSphere{b}) : 0;
}

double PathLength::add(const gps::GPSPoint& point) noexcept
{
    if (!isOnGlobe(point))
        return 0;
    const PlaceOnSphere place{point};
    const double step = last_ ? kilometresBetween(*last_, place) : 0;
    kilometres_ += step;
    last_ = place;
    return step;
}

// Until the first turn there is no heading, and both ends of the range follow the elevation.
void Climb::add(double elevationMetres) noexcept
{
    if (isEmpty_) {
        low_ = high_ = elevationMetres;
        isEmpty_ = false;
    }
    if (heading_ != Heading::kUp && elevationMetres - low_ >= kTurn_m)
        turnUp(elevationMetres);
    else if (heading_ != Heading::kDown && high_ - elevationMetres >= kTurn_m)
        turnDown(elevationMetres);
    else if (heading_ != Heading::kUp)
        low_ = std::min(low_, elevationMetres);
    if (heading_ != Heading::kDown)
        high_ = std::max(high_, elevationMetres);
}

void Climb::turnUp(double elevation) noexcept
{
    if (heading_ == Heading::kDown)
        descent_ += high_ - low_;
    heading_ = Heading::kUp;
    high_ = elevation;
}

void Climb::turnDown(double elevation) noexcept
{
    if (heading_ == Heading::kUp)
        ascent_ += high_ - low_;
    heading_ = Heading::kDown;
    low_ = elevation;
}

void MovingTime::add(const gps::GPSPoint& point) noexcept
{
    add(point, hasLast_ ? kilometresBetween(last_, point) : 0);
}

void MovingTime::add(const gps::GPSPoint& point, double kilometres) noexcept
{
    if (hasLast_) {
        const auto step = point.time - last_.time;
        const double metres = kilometres * 1000;
        if (step > 0 && step <= kLongestStep_s &&
            metres >= kSlowest_m_per_s * static_cast<double>(step))
            seconds_ += step;
    }
    last_ = point;
    hasLast_ = true;
}

void TrackFigures::add(const gps::GPSPoint& point) noexcept
{
    if (!isOnGlobe(point))
        return;
    const double step = length_.add(point);
    if (hasElevation(point)) {
        climb_.add(point.altitude);
        // A single altitude of 0 is sea level; only a track of nothing but zeros has none.
        hasElevations_ = hasElevations_ || point.altitude != 0;
    }
    // Distances take most of the time of writing a page, so each is computed once.
    const bool isTimed = hasTimestamp(point);
    const bool isStepOfBoth = std::exchange(isLastTimed_, isTimed);
    if (isTimed) {
        if (isStepOfBoth)
            moving_.add(point, step);
        else
            moving_.add(point);
        // Times can run backward within a track, so the first point need not be the earliest.
        first_ = std::min(first_.value_or(point.time), point.time);
        last_ = std::max(last_.value_or(point.time), point.time);
    }
}

void TrackFigures::breakHere() noexcept
{
    length_.breakHere();
    moving_.breakHere();
}

std::optional<double> TrackFigures::ascentMetres() const noexcept
{
    return hasElevations_ ? std::optional{climb_.ascentMetres()} : std::nullopt;
}

std::optional<double> TrackFigures::descentMetres() const noexcept
{
    return hasElevations_ ? std::optional{climb_.descentMetres()} : std::nullopt;
}

std::optional<std::int64_t> TrackFigures::movingSeconds() const noexcept
{
    return first_ ? std::optional{moving_.seconds()} : std::nullopt;
}

} // namespace host
