// SPDX-License-Identifier: MIT

#include "host/operations/DateFix.h"

#include "host/points/Points.h"

#include <gps/NumberText.h>

#include <algorithm>
#include <cmath>

namespace host {
namespace {

constexpr std::int64_t kDay = 86400; // seconds
constexpr std::int64_t kWeek = 7 * kDay;
constexpr std::int64_t kWeeksInACount = 1024;

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

const Event& DateFix::mended(const Event& event)
{
    if (event.kind != EventKind::kTrackPoint)
        trackWeeks_.reset();
    const bool hasPoint =
        event.kind == EventKind::kTrackPoint || event.kind == EventKind::kWayPoint;
    if (!hasPoint || !hasTimestamp(event.point))
        return event;
    newest_ = std::max(newest_.value_or(event.point.time), event.point.time);
    const auto weeks = weeksFor(event);
    if (weeks == 0)
        return event;
    mended_ = event;
    mended_.point.time += weeks * kWeek;
    if (auto* const boxed = mended_.record.find(gps::kPointKey);
        boxed != nullptr && boxed->as<gps::GPSPoint>() != nullptr)
        boxed->as<gps::GPSPoint>()->time = mended_.point.time;
    return mended_;
}

std::string DateFix::hint() const
{
    const bool isAsked = rule_.isAuto || rule_.weeks != 0;
    if (isAsked || !newest_ || !looksOld(*newest_))
        return {};
    std::string moment;
    appendTimestamp(moment, *newest_, ' ');
    return "The dates look 1024 weeks old, the newest being " + moment.substr(0, moment.find(' ')) +
           ": receivers' week counts roll over; --fix-dates auto adds 1024 weeks";
}

bool DateFix::looksOld(std::int64_t time) const noexcept
{
    return time + kWeeksInACount * kWeek <= now_ + kDay;
}

std::int64_t DateFix::weeksFor(const Event& event) noexcept
{
    if (!rule_.isAuto)
        return rule_.weeks;
    const auto own = looksOld(event.point.time) ? kWeeksInACount : 0;
    if (event.kind != EventKind::kTrackPoint)
        return own;
    trackWeeks_ = trackWeeks_.value_or(own);
    return *trackWeeks_;
}

} // namespace host
