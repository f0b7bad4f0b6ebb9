// SPDX-License-Identifier: MIT

#include "host/words/RestoreText.h"

#include <support/Variable.h>

#include <gmock/gmock.h>

#include <time.h>

namespace {

using host::BackupComparison;
using testing::ElementsAre;
using testing::SizeIs;

TEST(RestoreText, NameOfABackupIsItsTime)
{
    EXPECT_EQ(host::backupTimeText("20261123T050155Z", true), "2026-11-23 05:01:55 UTC");
    EXPECT_EQ(host::backupTimeText("20261123T050155Z-12", true), "2026-11-23 05:01:55 UTC");
    for (const char* const other : {"", "20261123T050155", "20261123-050155Z", "my backup",
                                    "20261323T050155Z", "2026112xT050155Z", "20261131T050155Z"}) {
        EXPECT_EQ(host::backupTimeText(other, true), other);
        EXPECT_EQ(host::backupTimeText(other, false), other);
    }
}

TEST(RestoreText, TimeOfABackupIsThatOfThisComputersClockUnlessInUtc)
{
    const support::Variable variable{"TZ", "America/St_Johns"};
    ::tzset();
    EXPECT_EQ(host::backupTimeText("20260701T010000Z", false), "2026-06-30 22:30:00 UTC-02:30");
    EXPECT_EQ(host::backupTimeText("20260701T010000Z", true), "2026-07-01 01:00:00 UTC");
}

TEST(RestoreText, TimeIsCalledUtcWhereClocksShowIt)
{
    const support::Variable variable{"TZ", "UTC"};
    ::tzset();
    EXPECT_EQ(host::backupTimeText("20260701T010000Z", false), "2026-07-01 01:00:00 UTC");
}

TEST(RestoreText, SizeIsFilesAndBytes)
{
    host::Backup backup;
    backup.files = 1;
    backup.bytes = 999;
    EXPECT_EQ(host::backupSizeText(backup), "1 file, 999 bytes");
    backup.files = 2;
    backup.bytes = 1234567;
    EXPECT_EQ(host::backupSizeText(backup), "2 files, 1.2 MB");
}

TEST(RestoreText, EachFileThatARestoreWouldWriteHasALine)
{
    BackupComparison comparison;
    comparison.files = {
        {.path = "a", .isOnDevice = true, .now = {.waypoints = 1}, .then = {.waypoints = 2}},
        {.path = "b", .isOnDevice = true, .now = {.routes = 1}, .then = {.routes = 1}},
        {.path = "c", .then = {}}};
    EXPECT_THAT(host::comparisonLines(comparison),
                ElementsAre("3 files would be written.",
                            "a: gets 2 waypoints instead of 1 waypoint.",
                            "b: is replaced; it has 1 route before and after.",
                            "c: is made again, with no records."));
    comparison.unchangedFiles = 1;
    EXPECT_EQ(host::comparisonLines(comparison).front(),
              "3 files would be written; the other 1 file of the backup is unchanged on the "
              "receiver.");
    comparison.files.assign(21, {.path = "a\nb"});
    const auto lines = host::comparisonLines(comparison);
    ASSERT_THAT(lines, SizeIs(22));
    EXPECT_EQ(lines[1].find('\n'), std::string::npos);
    EXPECT_EQ(lines.back(), "And 1 file more.");
}

TEST(RestoreText, FilesThatWouldStayAreNamed)
{
    BackupComparison comparison{.unchangedFiles = 2, .extraFiles = {"new"}};
    EXPECT_THAT(
        host::comparisonLines(comparison),
        ElementsAre(
            "The receiver already holds what the backup holds: there is nothing to restore.",
            "1 file is not in the backup, and will stay: new."));
    comparison.extraFiles.assign(21, "x");
    EXPECT_THAT(host::comparisonLines(comparison).back(),
                testing::AllOf(testing::StartsWith("21 files are not in the backup"),
                               testing::EndsWith("x, and 1 more.")));
}

TEST(RestoreText, BackupThatCannotBeRestoredSaysOnlyWhy)
{
    EXPECT_THAT(host::comparisonLines(
                    {.error = gps::Error{"some", 1, {{gps::kErrorDescriptionKey, "Damaged"}}}}),
                ElementsAre("Damaged."));
}

} // namespace
