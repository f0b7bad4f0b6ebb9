// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>

#include <plugin/codec/SentenceList.h>
#include <support/LogCapture.h>

namespace magellan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

/// Says what it was given; makes nothing of a record without a name.
std::optional<std::string> told(const gps::GPSPoint& point, const gps::Dictionary& record)
{
    const auto* name = record.findString("name");
    return name != nullptr ? std::optional{*name + " " + gps::describe(point)} : std::nullopt;
}

gps::Dictionary record(const char* name, double latitude)
{
    return {{"name", name}, {"point", gps::GPSPoint{latitude, 0, 0, 0, 0}}};
}

TEST(SentenceList, HasOneSentenceARecordInTheListsOrder)
{
    const support::LogCapture log;
    EXPECT_THAT(
        makeSentences({record("B", 1), record("A", 2), record("B", 1)}, "thing", told,
                      MissingPoint::kLeavesItOut),
        Optional(ElementsAre("B (1, 0, 0, 0, 0)", "A (2, 0, 0, 0, 0)", "B (1, 0, 0, 0, 0)")));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(SentenceList, OfAnEmptyListIsEmptyAndNotNone)
{
    EXPECT_THAT(makeSentences({}, "thing", told, MissingPoint::kLeavesItOut), Optional(IsEmpty()));
    EXPECT_THAT(makeSentences({}, "thing", told, MissingPoint::kEndsTheList), Optional(IsEmpty()));
}

TEST(SentenceList, ARecordWithoutItsPointIsLeftOutWithOneLogLine)
{
    const support::LogCapture log;
    EXPECT_THAT(makeSentences({record("A", 1), gps::Dictionary{{"name", "B"}}, record("C", 3)},
                              "thing", told, MissingPoint::kLeavesItOut),
                Optional(ElementsAre("A (1, 0, 0, 0, 0)", "C (3, 0, 0, 0, 0)")));
    EXPECT_THAT(log.lines(), ElementsAre("thing B contains no point --\n{name = \"B\"}"));
}

TEST(SentenceList, ARecordWithoutItsPointEndsTheListAtOnceWhereHalfAListIsNone)
{
    const support::LogCapture log;
    EXPECT_EQ(makeSentences(
                  {record("A", 1), gps::Dictionary{{"name", "B"}}, gps::Dictionary{{"name", "C"}}},
                  "thing", told, MissingPoint::kEndsTheList),
              std::nullopt);
    EXPECT_THAT(log.lines(), ElementsAre("thing B contains no point --\n{name = \"B\"}"));
}

TEST(SentenceList, ARecordThatCannotBeWrittenIsLeftOutWithOneLogLineInEitherList)
{
    for (const auto missingPoint : {MissingPoint::kLeavesItOut, MissingPoint::kEndsTheList}) {
        const support::LogCapture log;
        EXPECT_THAT(makeSentences({gps::Dictionary{{"point", gps::GPSPoint{}}}, record("B", 2)},
                                  "thing", told, missingPoint),
                    Optional(ElementsAre("B (2, 0, 0, 0, 0)")));
        EXPECT_THAT(
            log.lines(),
            ElementsAre("failed to create sentence for list from {point = (0, 0, 0, 0, 0)}"));
    }
}

} // namespace
} // namespace magellan
