// SPDX-License-Identifier: MIT
// The wording of the list makers' log lines.

#include <gps/Value.h>
#include <plugin/codec/CodecLog.h>
#include <support/LogCapture.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace magellan {
namespace {

using testing::ElementsAre;

TEST(CodecLog, AMissingPointIsLoggedWithTheNameAndTheWholeRecord)
{
    const support::LogCapture log;
    logMissingPoint("waypoint", gps::Dictionary{{"name", "HOME"}, {"comment", "our house"}});
    EXPECT_THAT(
        log.lines(),
        ElementsAre(
            "waypoint HOME contains no point --\n{name = \"HOME\", comment = \"our house\"}"));
}

TEST(CodecLog, AnAbsentNameIsNull)
{
    const support::LogCapture log;
    logMissingPoint("geocache", gps::Dictionary{});
    logMissingPoint("geocache", gps::Dictionary{{"name", 7}});
    logMissingPoint("geocache", "no record");
    EXPECT_THAT(log.lines(), ElementsAre("geocache (null) contains no point --\n{}",
                                         "geocache (null) contains no point --\n{name = 7}",
                                         "geocache (null) contains no point --\n\"no record\""));
}

TEST(CodecLog, AFailedSentenceIsLoggedWithTheRecord)
{
    const support::LogCapture log;
    logFailedSentence(gps::Dictionary{{"name", "HOME"}, {"point", gps::GPSPoint{91, 0, 0, 0, 0}}});
    EXPECT_THAT(
        log.lines(),
        ElementsAre(
            "failed to create sentence for list from {name = \"HOME\", point = (91, 0, 0, 0, 0)}"));
}

} // namespace
} // namespace magellan
