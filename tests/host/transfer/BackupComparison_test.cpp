// SPDX-License-Identifier: MIT

#include "host/transfer/BackupComparison.h"

#include "host/DriverReports.h"
#include "host/FakeDriver.h"
#include "host/backup/Backup.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// A device of three files, which was backed up. Each character of a file is a waypoint.
class BackupComparison : public testing::Test {
protected:
    BackupComparison()
    {
        for (const char* const name : {"a", "b", "c"})
            folder_.put(std::string{"device/Points/"} + name, "12");
        driver_.decode = [](std::string_view, std::string_view content) -> gps::Dictionary {
            return {{"waypoint", gps::Array(content.size(), support::waypointAt(46))}};
        };
        host::MadeBackup made;
        EXPECT_EQ(host::makeBackup({.folder = folder_.path("kept")}, device_, made), std::nullopt);
        backup_ = made.backup.path;
    }

    host::BackupComparison compare() const
    {
        return host::compareBackup(device_, backup_, driver_);
    }

    support::TemporaryFolder folder_;
    support::FakeFileDriver driver_;
    host::DataFolders device_{.device = folder_.path("device"),
                              .identifier = "42",
                              .folders = {folder_.makeFolder("device/Points")}};
    std::string backup_;
};

TEST_F(BackupComparison, DeviceThatHoldsTheBackupNeedsNoFile)
{
    const auto comparison = compare();
    EXPECT_FALSE(comparison.error);
    EXPECT_THAT(comparison.files, IsEmpty());
    EXPECT_EQ(comparison.unchangedFiles, 3U);
    EXPECT_THAT(comparison.extraFiles, IsEmpty());
}

TEST_F(BackupComparison, RecordsOfChangedAndMissingFilesAreCounted)
{
    folder_.put("device/Points/a", "1");
    std::filesystem::remove(folder_.path("device/Points/b"));
    folder_.put("device/Points/new", "");
    const auto comparison = compare();
    ASSERT_THAT(comparison.files, SizeIs(2));
    EXPECT_EQ(comparison.files[0].path, "Points/a");
    EXPECT_TRUE(comparison.files[0].isOnDevice);
    EXPECT_EQ(comparison.files[0].now, (host::RecordCounts{.waypoints = 1}));
    EXPECT_EQ(comparison.files[0].then, (host::RecordCounts{.waypoints = 2}));
    EXPECT_FALSE(comparison.files[1].isOnDevice);
    EXPECT_EQ(comparison.files[1].then, (host::RecordCounts{.waypoints = 2}));
    EXPECT_EQ(comparison.unchangedFiles, 1U);
    EXPECT_THAT(comparison.extraFiles, ElementsAre("Points/new"));
    EXPECT_EQ(folder_.read("device/Points/a"), "1") << "nothing is changed";
}

TEST_F(BackupComparison, BackupThatCannotBeRestoredHasAnError)
{
    auto other = device_;
    other.identifier = "43";
    EXPECT_TRUE(host::compareBackup(other, backup_, driver_).error);
    folder_.put(std::filesystem::relative(backup_, folder_.path("")).string() + "/files/Points/a",
                "x");
    EXPECT_TRUE(compare().error);
}

} // namespace
