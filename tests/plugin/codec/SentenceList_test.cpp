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

/// Appends a text of its arguments; nothing for a record without a name.
bool appendDescription(std::string& text, const gps::GPSPoint& point, const gps::Dictionary& record)
{
    const auto* name = record.findString("name");
    if (name != nullptr)
        text += *name + " " + gps::describe(point);
    return name != nullptr;
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
                      {"thing", appendDescription, MissingPoint::kSkipRecord}),
        Optional(ElementsAre("B (1, 0, 0, 0, 0)", "A (2, 0, 0, 0, 0)", "B (1, 0, 0, 0, 0)")));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(SentenceList, ASentenceIsAppendedWithItsLineEndAndAnythingElseLeavesTheTextUnchanged)
{
    const support::LogCapture log;
    std::string text = "before\n";
    const SentenceListKind kind{"thing", appendDescription, MissingPoint::kRejectList};
    EXPECT_TRUE(appendSentenceOf(record("A", 1), kind, "\n", text));
    EXPECT_TRUE(appendSentenceOf(gps::Dictionary{{"point", gps::GPSPoint{}}}, kind, "\n", text));
    EXPECT_FALSE(appendSentenceOf(gps::Dictionary{{"name", "B"}}, kind, "\n", text));
    EXPECT_EQ(text, "before\nA (1, 0, 0, 0, 0)\n");
}

TEST(SentenceList, AnEmptyListYieldsAnEmptyList)
{
    EXPECT_THAT(makeSentences({}, {"thing", appendDescription, MissingPoint::kSkipRecord}),
                Optional(IsEmpty()));
    EXPECT_THAT(makeSentences({}, {"thing", appendDescription, MissingPoint::kRejectList}),
                Optional(IsEmpty()));
}

TEST(SentenceList, ARecordWithoutItsPointIsSkippedWithOneLogLine)
{
    const support::LogCapture log;
    EXPECT_THAT(makeSentences({record("A", 1), gps::Dictionary{{"name", "B"}}, record("C", 3)},
                              {"thing", appendDescription, MissingPoint::kSkipRecord}),
                Optional(ElementsAre("A (1, 0, 0, 0, 0)", "C (3, 0, 0, 0, 0)")));
    EXPECT_THAT(log.lines(), ElementsAre("thing B contains no point --\n{name = \"B\"}"));
}

TEST(SentenceList, ARecordWithoutItsPointRejectsTheListIfRequested)
{
    const support::LogCapture log;
    EXPECT_EQ(makeSentences(
                  {record("A", 1), gps::Dictionary{{"name", "B"}}, gps::Dictionary{{"name", "C"}}},
                  {"thing", appendDescription, MissingPoint::kRejectList}),
              std::nullopt);
    EXPECT_THAT(log.lines(), ElementsAre("thing B contains no point --\n{name = \"B\"}"));
}

TEST(SentenceList, ARecordThatCannotBeWrittenIsSkippedWithOneLogLineInEitherCase)
{
    for (const auto missingPoint : {MissingPoint::kSkipRecord, MissingPoint::kRejectList}) {
        const support::LogCapture log;
        EXPECT_THAT(makeSentences({gps::Dictionary{{"point", gps::GPSPoint{}}}, record("B", 2)},
                                  {"thing", appendDescription, missingPoint}),
                    Optional(ElementsAre("B (2, 0, 0, 0, 0)")));
        EXPECT_THAT(
            log.lines(),
            ElementsAre("failed to create sentence for list from {point = (0, 0, 0, 0, 0)}"));
    }
}

} // namespace
} // namespace magellan
