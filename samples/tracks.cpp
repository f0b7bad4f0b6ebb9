// SPDX-License-Identifier: MIT
// Everything is computed from the walk and the point's number: no clock and no random device.

#include "tracks.h"

#include <platform/GPSUtilities/NMEAUtils.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>

namespace samples {
namespace {

constexpr double kFeetPerMetre = 3.2808399;

/// A smooth curve through the stops (Catmull-Rom); u is 0 at the first stop, 1 at the second, and
/// so on.
Place onCurve(const std::vector<Place>& stops, double u)
{
    const auto segment = std::min(static_cast<std::size_t>(u), stops.size() - 2);
    const double t = u - static_cast<double>(segment);
    const Place& b = stops[segment];
    const Place& c = stops[segment + 1];
    const Place& a = stops[segment == 0 ? 0 : segment - 1];
    const Place& d = stops[std::min(segment + 2, stops.size() - 1)];
    const auto between = [t](double p0, double p1, double p2, double p3) {
        return p1 +
               0.5 * t *
                   (p2 - p0 + t * (2 * p0 - 5 * p1 + 4 * p2 - p3 + t * (3 * (p1 - p2) + p3 - p0)));
    };
    return {between(a.east, b.east, c.east, d.east), between(a.north, b.north, c.north, d.north),
            between(a.altitude, b.altitude, c.altitude, d.altitude)};
}

/// Walking speed in metres per second. Source: Tobler's hiking function.
double walkingSpeed(double slope)
{
    return 6 / 3.6 * std::exp(-3.5 * std::abs(slope + 0.05));
}

/// The error of the receiver: it drifts by a few metres and never jumps.
class Wander {
public:
    explicit Wander(std::mt19937& random) : random_(random) {}
    double next()
    {
        return metres_ =
                   0.93 * metres_ + 1.6 * (static_cast<double>(random_()) / 4294967296.0 - 0.5);
    }

private:
    std::mt19937& random_;
    double metres_ = 0;
};

std::string trackPoint(const Region& region, const Place& place, std::int64_t time,
                       const Walk& walk, bool withDate)
{
    const auto text = gps::NMEAUtils::makeNMEADateFrom(time);
    auto body = "PMGNTRK" + positionFields(region, place) +
                joined({padded(place.altitude * (walk.feet ? kFeetPerMetre : 1), 5),
                        walk.feet ? "F" : "M", text.time, "A", walk.name});
    if (withDate)
        body += joined({text.date});
    return sentence(body);
}

} // namespace

Lines track(const Region& region, const Walk& walk)
{
    std::vector<Place> stops;
    for (const auto index : walk.stops) {
        const auto& stop = region.stops.at(index);
        stops.push_back({stop.east, stop.north, stop.altitude});
    }

    std::mt19937 random{static_cast<std::uint32_t>(walk.start)};
    Wander east{random};
    Wander north{random};
    Wander up{random};
    Lines lines;
    std::int64_t time = walk.start;
    const auto end = static_cast<double>(stops.size() - 1);
    for (double u = 0; u < end;) {
        const Place here = onCurve(stops, u);
        const Place seen{here.east + east.next(), here.north + north.next(),
                         here.altitude + up.next()};
        lines.push_back(trackPoint(region, seen, time, walk,
                                   walk.everyDate || (walk.firstDate && lines.empty())));

        const auto seconds = static_cast<std::int64_t>(10 + random() % 8);
        auto left = static_cast<double>(seconds);
        const double before = u;
        for (Place from = here; left > 0 && u < end;) {
            u += 0.0005;
            const Place to = onCurve(stops, std::min(u, end));
            const double metres = std::hypot(to.east - from.east, to.north - from.north);
            left -= metres / walkingSpeed((to.altitude - from.altitude) / metres);
            from = to;
        }
        const bool reachedStop = std::floor(u) > std::floor(before);
        time += seconds + (reachedStop ? static_cast<std::int64_t>(60 + random() % 540) : 0);
    }
    return lines;
}

} // namespace samples
