// SPDX-License-Identifier: MIT

#include "host/formats/EventLines.h"

#include "host/formats/Written.h"

#include <gtest/gtest.h>

namespace {

using gps::TransferKind;
using host::EventKind;

std::string lineOf(const host::Event& event)
{
    support::Written written;
    host::EventLines lines{written.output()};
    lines.event(event);
    EXPECT_FALSE(lines.close());
    return written.text();
}

std::string resultOf(const std::optional<gps::Error>& error)
{
    support::Written written;
    host::EventLines lines{written.output()};
    lines.result(error);
    return written.text();
}

TEST(EventLines, StateChangeHasItsState)
{
    EXPECT_EQ(lineOf(support::stateChange(1)), "{\"event\":\"gpsStateChange\",\"state\":1}\n");
    EXPECT_EQ(lineOf(support::stateChange(0)), "{\"event\":\"gpsStateChange\",\"state\":0}\n");
}

TEST(EventLines, TransfersHaveTheirKind)
{
    EXPECT_EQ(lineOf(support::transferEvent(EventKind::kStartTransfer, TransferKind::kWaypoints)),
              "{\"event\":\"startTransfer\",\"kind\":3}\n");
    EXPECT_EQ(lineOf(support::transferEvent(EventKind::kEndTransfer, TransferKind::kRoutes)),
              "{\"event\":\"endTransfer\",\"kind\":2}\n");
    EXPECT_EQ(lineOf(support::transferEvent(EventKind::kEndSending, TransferKind::kTracks)),
              "{\"event\":\"endSending\",\"kind\":1}\n");
}

TEST(EventLines, SendingHasItsLabelBeforeItsKind)
{
    auto event = support::transferEvent(EventKind::kStartSending, TransferKind::kTracks);
    event.label = "Tracks";
    EXPECT_EQ(lineOf(event), "{\"event\":\"startSending\",\"label\":\"Tracks\",\"kind\":1}\n");
}

TEST(EventLines, WayPointHasItsPointAndItsWholeRecordInOrder)
{
    EXPECT_EQ(lineOf(support::wayPoint({46, -7.25, 1200.5, 1717236000, -1},
                                       {{"symbol", "Camp"}, {"name", "A"}})),
              "{\"event\":\"wayPoint\",\"point\":{\"latitude\":46,\"longitude\":-7.25,\"altitude\":"
              "1200.5,\"time\":1717236000,"
              "\"reserved\":-1},\"extra\":{\"symbol\":\"Camp\",\"name\":\"A\"}}\n");
}

TEST(EventLines, TrackPointWithoutExtrasHasAnEmptyRecord)
{
    EXPECT_EQ(lineOf(support::trackPoint({0.1, 1e22, -0.0, 0, 0})),
              "{\"event\":\"trackPoint\",\"point\":{\"latitude\":0.1,\"longitude\":1e+22,"
              "\"altitude\":-0,\"time\":0,\"reserved\":0},"
              "\"extra\":{}}\n");
}

TEST(EventLines, CollectionsHaveTheirRecordUnderTheirOwnKey)
{
    EXPECT_EQ(lineOf(support::newTrack({{"name", "Day 1"}})),
              "{\"event\":\"newTrack\",\"track\":{\"name\":\"Day 1\"}}\n");
    EXPECT_EQ(lineOf(support::newRoute({{"name", "Loop"}, {"lastIndex", 4}})),
              "{\"event\":\"newRoute\",\"route\":{\"name\":\"Loop\",\"lastIndex\":4}}\n");
}

TEST(EventLines, MissingPartsOfAnErrorAreNull)
{
    auto event = support::ofKind(EventKind::kError);
    event.error = gps::Error{"some", -4};
    EXPECT_EQ(
        lineOf(event),
        "{\"event\":\"error\",\"error\":{\"domain\":\"some\",\"code\":-4,\"description\":null,"
        "\"suggestion\":null,\"path\":null}}\n");
}

TEST(EventLines, ResultIsNullOrTheError)
{
    EXPECT_EQ(resultOf(std::nullopt), "{\"event\":\"result\",\"error\":null}\n");
    EXPECT_EQ(resultOf(gps::Error{"d",
                                  7,
                                  {{gps::kErrorDescriptionKey, "What"},
                                   {gps::kErrorSuggestionKey, "Try"},
                                   {gps::kErrorPathKey, "/a \"b\""}}}),
              "{\"event\":\"result\",\"error\":{\"domain\":\"d\",\"code\":7,\"description\":"
              "\"What\",\"suggestion\":\"Try\","
              "\"path\":\"/a \\\"b\\\"\"}}\n");
}

} // namespace
