// SPDX-License-Identifier: MIT
// How a list maker treats records without a point and records that cannot be written.

#include <plugin/codec/SentenceList.h>
#include <support/LogCapture.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace magellan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

/// Makes a text of its arguments; makes none for a record without a name.
std::optional<std::string> described(const gps::GPSPoint& point, const gps::Dictionary& record)
{
    const auto* name = record.findString("name");
    return name != nullptr ? std::optional{*name + " " + gps::describe(point)} : std::nullopt;
}

gps::Dictionary record(const char* name, double latitude)
{
    return {{"name", name}, {"point", gps::GPSPoint{latitude, 0, 0, 0, 0}}};
}

TEST(SentenceList, HasOneSentencePerRecordInTheListsOrder)
{
    const support::LogCapture log;
    EXPECT_THAT(
        makeSentences({record("B", 1), record("A", 2), record("B", 1)},
                      {"thing", described, MissingPoint::kSkipRecord}),
        Optional(ElementsAre("B (1, 0, 0, 0, 0)", "A (2, 0, 0, 0, 0)", "B (1, 0, 0, 0, 0)")));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(SentenceList, AnEmptyListYieldsAnEmptyList)
{
    EXPECT_THAT(makeSentences({}, {"thing", described, MissingPoint::kSkipRecord}),
                Optional(IsEmpty()));
    EXPECT_THAT(makeSentences({}, {"thing", described, MissingPoint::kRejectList}),
                Optional(IsEmpty()));
}

TEST(SentenceList, ARecordWithoutItsPointIsSkippedWithOneLogLine)
{
    const support::LogCapture log;
    EXPECT_THAT(makeSentences({record("A", 1), gps::Dictionary{{"name", "B"}}, record("C", 3)},
                              {"thing", described, MissingPoint::kSkipRecord}),
                Optional(ElementsAre("A (1, 0, 0, 0, 0)", "C (3, 0, 0, 0, 0)")));
    EXPECT_THAT(log.lines(), ElementsAre("thing B contains no point --\n{name = \"B\"}"));
}

TEST(SentenceList, ARecordWithoutItsPointRejectsTheListIfRequested)
{
    const support::LogCapture log;
    EXPECT_EQ(makeSentences(
                  {record("A", 1), gps::Dictionary{{"name", "B"}}, gps::Dictionary{{"name", "C"}}},
                  {"thing", described, MissingPoint::kRejectList}),
              std::nullopt);
    EXPECT_THAT(log.lines(), ElementsAre("thing B contains no point --\n{name = \"B\"}"));
}

TEST(SentenceList, ARecordThatCannotBeWrittenIsSkippedWithOneLogLineInEitherCase)
{
    for (const auto missingPoint : {MissingPoint::kSkipRecord, MissingPoint::kRejectList}) {
        const support::LogCapture log;
        EXPECT_THAT(makeSentences({gps::Dictionary{{"point", gps::GPSPoint{}}}, record("B", 2)},
                                  {"thing", described, missingPoint}),
                    Optional(ElementsAre("B (2, 0, 0, 0, 0)")));
        EXPECT_THAT(
            log.lines(),
            ElementsAre("failed to create sentence for list from {point = (0, 0, 0, 0, 0)}"));
    }
}

} // namespace
} // namespace magellan
