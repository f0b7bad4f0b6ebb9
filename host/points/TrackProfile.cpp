// SPDX-License-Identifier: MIT
// All values are computed once, in a few passes over the points.

#include "host/points/TrackProfile.h"

#include "host/points/Points.h"
#include "host/points/TrackFigures.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace host {
namespace {

constexpr double kHalfSpeedWindow = 15; // seconds
constexpr double kHalfTopWindow = 5;    // seconds
constexpr double kHalfSlopeWindow = 50; // metres
constexpr double kTopShare = 0.99;
constexpr float kUnknownRate = std::numeric_limits<float>::quiet_NaN();

// The indices of the values that are higher than all before them.
template <typename Value> std::vector<std::size_t> risingIndices(std::size_t count, Value valueAt)
{
    std::vector<std::size_t> indices;
    double highest = -std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < count; ++i) {
        const double value = valueAt(i);
        if (value > highest) { // false for NaN
            highest = value;
            indices.push_back(i);
        }
    }
    return indices;
}

// For each point, how much y changes with x within `halfWindow` to either side, or up to the
// neighbours if those are farther away. Uses the points whose x is higher than all before.
template <typename X, typename Y>
std::vector<float> ratesOf(std::size_t count, double halfWindow, X x, Y y)
{
    std::vector<float> rates(count, kUnknownRate);
    const auto rising = risingIndices(count, x);
    std::size_t from = 0;
    std::size_t to = 0;
    for (std::size_t at = 0; at < rising.size(); ++at) {
        const double now = x(rising[at]);
        while (from + 1 < at && x(rising[from + 1]) <= now - halfWindow)
            ++from;
        while (to + 1 < rising.size() && (to <= at || x(rising[to]) < now + halfWindow))
            ++to;
        const auto first = rising[std::min(from, at)];
        const auto last = rising[to];
        if (first != last)
            rates[rising[at]] = static_cast<float>((y(last) - y(first)) / (x(last) - x(first)));
    }
    return rates;
}

void addHeights(const TrackProfile& profile, std::size_t from, std::size_t to,
                StretchFigures& figures)
{
    Climb climb;
    std::size_t first = to + 1;
    std::size_t last = 0;
    for (std::size_t i = from; i <= to; ++i) {
        const double elevation = profile.elevation(i);
        if (std::isnan(elevation))
            continue;
        first = std::min(first, i);
        last = i;
        figures.lowest = std::fmin(figures.lowest, elevation); // not NaN if one of both is
        figures.highest = std::fmax(figures.highest, elevation);
        climb.add(elevation);
    }
    if (first > to)
        return;
    figures.ascent = climb.ascentMetres();
    figures.descent = climb.descentMetres();
    const double way = profile.metres()[last] - profile.metres()[first];
    if (way > 0)
        figures.slope = (profile.elevation(last) - profile.elevation(first)) / way;
}

// Straight from one timed point to the next, past those without a time.
double metresFrom(const TrackProfile& profile, std::size_t from, std::size_t to)
{
    return to == from + 1 ? profile.metres()[to] - profile.metres()[from]
                          : kilometresBetween(profile.point(from), profile.point(to)) * 1000;
}

void addTimes(const TrackProfile& profile, std::size_t from, std::size_t to,
              StretchFigures& figures)
{
    MovingTime moving;
    double movingMetres = 0;
    double earliest = kUnknownValue;
    double latest = kUnknownValue;
    std::size_t last = to + 1;
    const auto breaks = profile.breaks();
    auto next = std::upper_bound(breaks.begin(), breaks.end(), from);
    for (std::size_t i = from; i <= to; ++i) {
        if (next != breaks.end() && *next == i) {
            moving.breakHere();
            last = to + 1;
            ++next;
        }
        const double time = profile.time(i);
        if (std::isnan(time))
            continue;
        earliest = std::fmin(earliest, time);
        latest = std::fmax(latest, time);
        const double metres = last > to ? 0 : metresFrom(profile, last, i);
        const auto before = moving.seconds();
        moving.add(profile.point(i), metres / 1000);
        if (moving.seconds() > before)
            movingMetres += metres;
        last = i;
    }
    if (std::isnan(earliest))
        return;
    figures.seconds = latest - earliest;
    figures.moving = static_cast<double>(moving.seconds());
    if (figures.seconds > 0)
        figures.average = figures.metres / figures.seconds;
    if (figures.moving > 0)
        figures.movingAverage = movingMetres / figures.moving;
}

} // namespace

TrackProfile::TrackProfile(std::span<const gps::GPSPoint> points,
                           std::span<const std::size_t> segments)
    : points_(points), breaks_(segments.begin(), segments.end())
{
    if (!std::all_of(points.begin(), points.end(), isOnGlobe))
        keepValid(points, segments);
    // A single altitude of 0 is sea level; only a track of nothing but zeros has none.
    hasElevations_ = std::any_of(points_.begin(), points_.end(), [](const gps::GPSPoint& point) {
        return hasElevation(point) && point.altitude != 0;
    });
    measure();
    noteTimes();
}

void TrackProfile::keepValid(std::span<const gps::GPSPoint> points,
                             std::span<const std::size_t> segments)
{
    breaks_.clear();
    auto segment = segments.begin();
    bool isBroken = false;
    for (std::size_t i = 0; i < points.size(); ++i) {
        for (; segment != segments.end() && *segment <= i; ++segment)
            isBroken = true;
        if (!isOnGlobe(points[i]))
            continue;
        if (isBroken && !valid_.empty())
            breaks_.push_back(valid_.size());
        isBroken = false;
        valid_.push_back(points[i]);
    }
    points_ = valid_;
}

void TrackProfile::measure()
{
    PathLength length;
    auto next = breaks_.begin();
    metres_.reserve(size());
    for (std::size_t i = 0; i < size(); ++i) {
        if (next != breaks_.end() && *next == i) {
            length.breakHere();
            ++next;
        }
        length.add(points_[i]);
        metres_.push_back(length.kilometres() * 1000);
    }
    const auto metresAt = [this](std::size_t i) { return metres_[i]; };
    const auto timeAt = [this](std::size_t i) { return time(i); };
    const auto elevationAt = [this](std::size_t i) { return elevation(i); };
    const auto risenAt = [this](std::size_t i) {
        return std::isnan(elevation(i)) ? kUnknownValue : metres_[i];
    };
    speeds_ = ratesOf(size(), kHalfSpeedWindow, timeAt, metresAt);
    topSpeeds_ = ratesOf(size(), kHalfTopWindow, timeAt, metresAt);
    slopes_ = ratesOf(size(), kHalfSlopeWindow, risenAt, elevationAt);
}

void TrackProfile::noteTimes()
{
    double first = kUnknownValue;
    for (std::size_t i = 0; i < size() && !hasDuration_; ++i) {
        const double now = time(i);
        hasDuration_ = now > first || now < first;
        first = std::isnan(first) ? now : first;
    }
}

double TrackProfile::elevation(std::size_t i) const noexcept
{
    return hasElevations_ && hasElevation(points_[i]) ? points_[i].altitude : kUnknownValue;
}

double TrackProfile::time(std::size_t i) const noexcept
{
    return hasTimestamp(points_[i]) ? static_cast<double>(points_[i].time) : kUnknownValue;
}

std::vector<double> TrackProfile::elapsedSeconds() const
{
    std::vector<double> elapsed(size());
    double start = kUnknownValue;
    double latest = 0;
    for (std::size_t i = 0; i < size(); ++i) {
        const double now = time(i);
        start = std::isnan(start) ? now : start;
        latest = std::fmax(latest, now - start);
        elapsed[i] = latest;
    }
    return elapsed;
}

double TrackProfile::topSpeed(std::size_t from, std::size_t to) const
{
    std::vector<float> speeds;
    std::copy_if(topSpeeds_.begin() + static_cast<std::ptrdiff_t>(from),
                 topSpeeds_.begin() + static_cast<std::ptrdiff_t>(to) + 1,
                 std::back_inserter(speeds), [](float speed) { return !std::isnan(speed); });
    if (speeds.empty())
        return kUnknownValue;
    const auto top = std::ceil(kTopShare * static_cast<double>(speeds.size())) - 1;
    const auto at = speeds.begin() + static_cast<std::ptrdiff_t>(top);
    std::nth_element(speeds.begin(), at, speeds.end());
    return *at;
}

StretchFigures stretchFigures(const TrackProfile& profile, std::size_t from, std::size_t to)
{
    StretchFigures figures;
    if (profile.size() == 0)
        return figures;
    figures.metres = profile.metres()[to] - profile.metres()[from];
    addHeights(profile, from, to, figures);
    addTimes(profile, from, to, figures);
    figures.top = profile.topSpeed(from, to);
    return figures;
}

std::size_t indexNearest(std::span<const double> values, double position) noexcept
{
    const auto found = std::lower_bound(values.begin(), values.end() - 1, position);
    const auto at = static_cast<std::size_t>(found - values.begin());
    return at > 0 && position - values[at - 1] < values[at] - position ? at - 1 : at;
}

} // namespace host
