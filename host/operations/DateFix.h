// SPDX-License-Identifier: MIT
// DateFix: mends the times of a receiver whose count of weeks has rolled over. Satellites count
// 1024 weeks and begin anew, so such a receiver tells dates that lie 1024 weeks, or 19.6 years, too
// early. One thread at a time.

#pragma once

#include "host/operations/Event.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// What is added to times. By default nothing.
struct DateRule {
    static constexpr std::int32_t kMostWeeks =
        5218; ///< either way: the hundred years of which a receiver's dates are

    bool isAuto = false;    ///< 1024 weeks, to those that look 1024 weeks old
    std::int32_t weeks = 0; ///< this many, to all
};

/// Reads "auto", "off" or a whole number of weeks with an optional sign. @return  none for anything
/// else, and for too many weeks
[[nodiscard]] std::optional<DateRule> readDateRule(std::string_view text) noexcept;

/// Goes over a stream of events, in order.
///
/// A time looks 1024 weeks old when 1024 weeks more do not take it past tomorrow, a day from now.
/// In a track the first moment decides for all points after it, so that no track is torn apart;
/// waypoints and routes' points stand alone each. A receiver that was right once and then rolled
/// over is mended where it is wrong. What cannot be told apart is a true track of 1024 weeks ago.
///
/// Only moments are mended: no time stays none, and so does a time of day without a date. Texts
/// that are dates, such as geocaches have, are no times of the receiver's clock and stay.
class DateFix {
public:
    /// @param now  seconds since 1970-01-01 00:00 UTC
    DateFix(DateRule rule, std::int64_t now) noexcept : rule_(rule), now_(now) {}

    /// @return  the event with its time mended, the point boxed in its record too; `event` itself
    /// where nothing changes.
    ///          Holds until the next call
    [[nodiscard]] const Event& mended(const Event& event);

    /// What to tell a user who has asked for nothing, though even the newest time looks 1024 weeks
    /// old; else empty.
    [[nodiscard]] std::string hint() const;

private:
    [[nodiscard]] bool looksOld(std::int64_t time) const noexcept;
    [[nodiscard]] std::int64_t weeksFor(const Event& event) noexcept;

    DateRule rule_;
    std::int64_t now_;
    std::optional<std::int64_t> newest_;     // as reported
    std::optional<std::int64_t> trackWeeks_; // decided by the open track's first moment
    Event mended_;
};

} // namespace host
