// SPDX-License-Identifier: MIT

#include "host/transfer/TimeRange.h"

#include "host/points/Points.h"

#include <support/Variable.h>

#include <gtest/gtest.h>

#include <ctime>

namespace {

std::string utc(std::int64_t time)
{
    std::string text;
    host::appendTimestamp(text, time, ' ');
    return text;
}

/// The first and the last time of a range, in UTC.
std::string rangeOf(const std::string& text, const char* zone)
{
    const support::Variable variable{"TZ", zone};
    ::tzset();
    const auto range = host::readTimeRange(text);
    return range ? utc(range->first) + " to " + utc(range->last) : "nothing";
}

TEST(TimeRange, DateIsThatWholeDayByTheClocksOfTheZone)
{
    EXPECT_EQ(rangeOf("2008-08-11", "UTC"), "2008-08-11 00:00:00 to 2008-08-11 23:59:59");
    EXPECT_EQ(rangeOf("2008-08-11", "Europe/Zurich"), "2008-08-10 22:00:00 to 2008-08-11 21:59:59");
    EXPECT_EQ(rangeOf("2008-08-11", "America/St_Johns"),
              "2008-08-11 02:30:00 to 2008-08-12 02:29:59");
}

TEST(TimeRange, DayMayHave23Or25Hours)
{
    EXPECT_EQ(rangeOf("2008-03-30", "Europe/Zurich"), "2008-03-29 23:00:00 to 2008-03-30 21:59:59");
    EXPECT_EQ(rangeOf("2008-10-26", "Europe/Zurich"), "2008-10-25 22:00:00 to 2008-10-26 22:59:59");
}

TEST(TimeRange, TimeIsThatWholeMinuteOrSecond)
{
    for (const char* const text : {"2008-08-11T08:15", "2008-08-11 08:15"})
        EXPECT_EQ(rangeOf(text, "Europe/Zurich"), "2008-08-11 06:15:00 to 2008-08-11 06:15:59");
    EXPECT_EQ(rangeOf("2008-08-11T08:15:48", "Europe/Zurich"),
              "2008-08-11 06:15:48 to 2008-08-11 06:15:48");
}

TEST(TimeRange, ZoneOfTheTextReplacesThatOfTheComputer)
{
    EXPECT_EQ(rangeOf("2008-08-11T08:15Z", "Europe/Zurich"),
              "2008-08-11 08:15:00 to 2008-08-11 08:15:59");
    EXPECT_EQ(rangeOf("2008-08-11T08:15:48-03:30", "Europe/Zurich"),
              "2008-08-11 11:45:48 to 2008-08-11 11:45:48");
}

TEST(TimeRange, TimeThatClocksShowTwiceIsBoth)
{
    EXPECT_EQ(rangeOf("2008-10-26T02:30", "Europe/Zurich"),
              "2008-10-26 00:30:00 to 2008-10-26 01:30:59");
}

TEST(TimeRange, OtherTextsAreRejected)
{
    for (const char* const text : {"",
                                   "today",
                                   "2008",
                                   "2008-08",
                                   "2008-8-11",
                                   "2008-02-30",
                                   "2008-13-01",
                                   "11.08.2008",
                                   "2008-08-11T",
                                   "2008-08-11T08",
                                   "2008-08-11T24:00",
                                   "2008-08-11T08:60",
                                   "2008-08-11T08:15:60",
                                   "2008-08-11T08:15:48.5",
                                   "2008-08-11T08:15 Z",
                                   "2008-08-11Z",
                                   "2008-08-11T08:15X",
                                   " 2008-08-11",
                                   "2008-08-11 ",
                                   "2008-08-11T08:15+25:00"})
        EXPECT_FALSE(host::readTimeRange(text)) << text;
}

} // namespace
