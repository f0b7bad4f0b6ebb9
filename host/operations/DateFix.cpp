// SPDX-License-Identifier: MIT
// A time below the first date that GPS can express counts as a time of day without a date; see
// hasTimestamp().

#include "host/operations/DateFix.h"

#include "host/points/Points.h"

#include <gps/NumberText.h>

#include <algorithm>

namespace host {
namespace {

constexpr std::int64_t kDay = 86400; // seconds
constexpr std::int64_t kWeek = 7 * kDay;
constexpr std::int64_t kWeeksOfACounter = 1024;

} // namespace

std::optional<DateRule> readDateRule(std::string_view text) noexcept
{
    if (text == "auto")
        return DateRule{.isAuto = true};
    if (text == "off")
        return DateRule{};
    const auto weeks = gps::wholeInteger(text);
    if (!weeks || *weeks < -DateRule::kMostWeeks || *weeks > DateRule::kMostWeeks)
        return std::nullopt;
    return DateRule{.weeks = static_cast<std::int32_t>(*weeks)};
}

const Event& DateFix::adjusted(const Event& event)
{
    if (event.kind != EventKind::kTrackPoint && event.kind != EventKind::kNewSegment)
        trackWeeks_.reset();
    const bool hasPoint =
        event.kind == EventKind::kTrackPoint || event.kind == EventKind::kWayPoint;
    if (!hasPoint || !hasTimestamp(event.point))
        return event;
    newest_ = std::max(newest_.value_or(event.point.time), event.point.time);
    const auto weeks = weeksFor(event);
    if (weeks == 0)
        return event;
    ++adjustedCount_;
    // A member, so that its record's storage is reused from point to point.
    adjusted_ = event;
    adjusted_.point.time += weeks * kWeek;
    if (auto* const boxed = adjusted_.record.find(gps::kPointKey);
        boxed != nullptr && boxed->as<gps::GPSPoint>() != nullptr)
        boxed->as<gps::GPSPoint>()->time = adjusted_.point.time;
    return adjusted_;
}

std::optional<std::int64_t> DateFix::suspectNewest() const noexcept
{
    const bool isAdjusting = rule_.isAuto || rule_.weeks != 0;
    return !isAdjusting && newest_ && looksOld(*newest_) ? newest_ : std::nullopt;
}

// Cannot overflow: times with a timestamp end with the year 9999.
bool DateFix::looksOld(std::int64_t time) const noexcept
{
    return time + kWeeksOfACounter * kWeek <= now_ + kDay;
}

std::int64_t DateFix::weeksFor(const Event& event) noexcept
{
    if (!rule_.isAuto)
        return rule_.weeks;
    const auto own = looksOld(event.point.time) ? kWeeksOfACounter : 0;
    if (event.kind != EventKind::kTrackPoint)
        return own;
    trackWeeks_ = trackWeeks_.value_or(own);
    return *trackWeeks_;
}

} // namespace host
