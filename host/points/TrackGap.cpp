// SPDX-License-Identifier: MIT
// Distances are those of a track's length, so that a gap and a length agree.

#include "host/points/TrackGap.h"

#include "host/points/Points.h"
#include "host/points/TrackFigures.h"

#include <gps/NumberText.h>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace host {
namespace {

struct Unit {
    std::string_view name;
    double factor; // to seconds or metres
    bool isTime;
};

// A name is tried before those that end in it.
constexpr std::array kUnits{Unit{"min", 60, true}, Unit{"km", 1000, false}, Unit{"s", 1, true},
                            Unit{"h", 3600, true}, Unit{"m", 1, false}};

constexpr double kLongestTime = 366.0 * 86400; // seconds
constexpr double kLongestWay = 40'075'017;     // metres: the Earth's circumference

double metresBetween(const gps::GPSPoint& a, const gps::GPSPoint& b) noexcept
{
    return kilometresBetween(a, b) * 1000;
}

std::int64_t secondsBetween(const gps::GPSPoint& a, const gps::GPSPoint& b) noexcept
{
    return std::abs(b.time - a.time);
}

std::optional<GapRule> ruleOf(double number, const Unit& unit)
{
    const double size = number * unit.factor;
    // Times are whole seconds, so a fraction of one makes no difference.
    if (!(size >= 1) || size > (unit.isTime ? kLongestTime : kLongestWay))
        return std::nullopt;
    if (unit.isTime)
        return GapRule{.seconds = static_cast<std::int64_t>(size)};
    return GapRule{.metres = size};
}

} // namespace

bool isImpossibleJump(const gps::GPSPoint& before, const gps::GPSPoint& after) noexcept
{
    if (areNear(before, after) || !hasTimestamp(before) || !hasTimestamp(after))
        return false;
    const auto seconds = std::max<std::int64_t>(secondsBetween(before, after), 1);
    return metresBetween(before, after) > kMostMetresPerSecond * static_cast<double>(seconds);
}

std::optional<GapRule> readGapRule(std::string_view text)
{
    if (text == "off")
        return GapRule{.isOff = true};
    for (const auto& unit : kUnits) {
        if (!text.ends_with(unit.name))
            continue;
        const auto number = gps::wholeNumber(text.substr(0, text.size() - unit.name.size()));
        return number ? ruleOf(*number, unit) : std::nullopt;
    }
    return std::nullopt;
}

bool GapFinder::isGapBeforeAny(const gps::GPSPoint& point) noexcept
{
    if (!isOnGlobe(point))
        return false;
    const bool result = hasLast_ && isGap(point);
    last_ = point;
    hasLast_ = true;
    return result;
}

bool GapFinder::isGap(const gps::GPSPoint& point) const noexcept
{
    if (rule_.isOff)
        return false;
    const bool areTimed = hasTimestamp(last_) && hasTimestamp(point);
    if (rule_.seconds && areTimed && secondsBetween(last_, point) > *rule_.seconds)
        return true;
    if (rule_.metres && metresBetween(last_, point) > *rule_.metres)
        return true;
    return isImpossibleJump(last_, point);
}

} // namespace host
