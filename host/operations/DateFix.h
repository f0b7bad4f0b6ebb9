// SPDX-License-Identifier: MIT
// DateFix: adjusts the times of a receiver whose week counter has rolled over. Satellites count
// 1024 weeks and then start again at zero, so the dates of such a receiver are 1024 weeks (19.6
// years) too early. Used by downloads. One thread at a time.

#pragma once

#include "host/operations/Event.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace host {

/// What is added to times. By default nothing.
struct DateRule {
    /// The limit in either direction: a receiver's dates have two-digit years, so they span a
    /// century.
    static constexpr std::int32_t kMostWeeks = 5218;

    bool isAuto = false;    ///< add 1024 weeks to times that look 1024 weeks too old
    std::int32_t weeks = 0; ///< without isAuto: add this many weeks to all times
};

/// Reads "auto", "off" or a whole number of weeks with an optional sign. Returns nullopt for any
/// other text, and for more than kMostWeeks.
[[nodiscard]] std::optional<DateRule> readDateRule(std::string_view text) noexcept;

/// Adjusts a stream of events, in order.
///
/// A time looks 1024 weeks too old if adding 1024 weeks does not move it past tomorrow (a day from
/// now). In a track the first time decides for all later points, so that no track is torn apart;
/// waypoints and route points are judged one by one. So a receiver that rolled over halfway through
/// its records is adjusted only where it is wrong. A genuine track from 1024 weeks ago is
/// indistinguishable and would be shifted too.
///
/// Only dates with a time are adjusted: a missing time stays missing, and so does the missing date
/// of a time of day. Dates that are texts, such as those of geocaches, do not come from the
/// receiver's clock and stay as they are.
class DateFix {
public:
    /// @param now  seconds since 1970-01-01 00:00 UTC
    DateFix(DateRule rule, std::int64_t now) noexcept : rule_(rule), now_(now) {}

    /// Returns the event with its time adjusted, also in the point that its record may hold. The
    /// result is `event` itself if nothing changes, and is valid until the next call.
    [[nodiscard]] const Event& adjusted(const Event& event);

    /// How many events had their time changed.
    [[nodiscard]] std::size_t adjustedCount() const noexcept { return adjustedCount_; }

    /// The newest time seen, if the rule changes nothing although even that time looks 1024 weeks
    /// too old. Otherwise nullopt.
    [[nodiscard]] std::optional<std::int64_t> suspectNewest() const noexcept;

private:
    [[nodiscard]] bool looksOld(std::int64_t time) const noexcept;
    [[nodiscard]] std::int64_t weeksFor(const Event& event) noexcept;

    DateRule rule_;
    std::int64_t now_;
    std::optional<std::int64_t> newest_;     // as reported
    std::optional<std::int64_t> trackWeeks_; // decided by the open track's first time
    std::size_t adjustedCount_ = 0;
    Event adjusted_;
};

} // namespace host
