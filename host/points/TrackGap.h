// SPDX-License-Identifier: MIT
// TrackGap: between which points of a track a new segment begins. Used by downloads and by the
// summary. GapFinder: one thread at a time; the functions: [any].

#pragma once

#include <gps/GPSPoint.h>

#include <cmath>
#include <cstdint>
#include <optional>
#include <string_view>

namespace host {

/// Civil receivers stop working above 1000 knots, so no track can have a higher speed.
inline constexpr double kMostMetresPerSecond = 515;

/// Whether two points are so near to each other that a receiver can get from one to the other
/// within a second. Quick, and true of nearly all neighbours in a track; not of all that it could
/// be.
[[nodiscard]] inline bool areNear(const gps::GPSPoint& a, const gps::GPSPoint& b) noexcept
{
    constexpr double kNear = 0.003; // degrees; both together are at most 472 m
    return std::abs(a.latitude - b.latitude) < kNear && std::abs(a.longitude - b.longitude) < kNear;
}

/// Whether no receiver can have moved from one point to the next in the time between them. False
/// unless both have valid coordinates and a timestamp. Times are whole seconds, so two points of
/// the same second count as one second apart.
[[nodiscard]] bool isImpossibleJump(const gps::GPSPoint& before,
                                    const gps::GPSPoint& after) noexcept;

/// What counts as a gap. By default only an impossible jump.
struct GapRule {
    bool isOff = false;                    ///< nothing does
    std::optional<std::int64_t> seconds{}; ///< also more than this between two timestamps
    std::optional<double> metres{};        ///< also more than this between two points

    [[nodiscard]] bool isDefault() const noexcept { return !isOff && !seconds && !metres; }
};

/// Reads "off", or a positive number with a unit: "s", "min" or "h" for a time, "m" or "km" for a
/// distance. Returns nullopt for any other text, and for more than a year or the Earth's
/// circumference, which no gap can exceed.
[[nodiscard]] std::optional<GapRule> readGapRule(std::string_view text);

/// Looks at the points of a track one by one.
class GapFinder {
public:
    explicit GapFinder(const GapRule& rule) noexcept : rule_(rule), looksAtAll_(!rule.isDefault())
    {}

    /// A new track or segment begins with the next point.
    void restart() noexcept
    {
        last_.latitude = NAN; // nothing is near to it
        hasLast_ = false;
    }

    /// Whether there is a gap between the last point and this one. Points without valid coordinates
    /// are skipped.
    [[nodiscard]] bool isGapBefore(const gps::GPSPoint& point) noexcept
    {
        if (!areNear(last_, point) || looksAtAll_)
            return isGapBeforeAny(point);
        last_ = point;
        return false;
    }

private:
    [[nodiscard]] bool isGapBeforeAny(const gps::GPSPoint& point) noexcept;
    [[nodiscard]] bool isGap(const gps::GPSPoint& point) const noexcept;

    GapRule rule_;
    bool looksAtAll_;
    bool hasLast_ = false;
    gps::GPSPoint last_{.latitude = NAN};
};

} // namespace host
