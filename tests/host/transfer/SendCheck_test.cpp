// SPDX-License-Identifier: MIT

#include "host/transfer/SendCheck.h"

#include "support/TemporaryFolder.h"

#include <platform/System/FileManager.h>

#include <gmock/gmock.h>

namespace {

using Action = gps::PlannedFile::Action;
using gps::TransferKind;
using testing::ElementsAre;
using testing::IsEmpty;

gps::Error unreadable(const std::string& path, gps::FileErrorCode code)
{
    return gps::Error{"plug-in", -1, {{gps::kErrorPathKey, path}}}.causedBy(
        gps::makeFileError(code, path));
}

TEST(SendCheck, KindsAreThoseOfTheArraysInTheOrderOfSending)
{
    EXPECT_THAT(
        host::kindsIn({{"waypoint", gps::Array{}}, {"route", "none"}, {"track", gps::Array{1}}}),
        ElementsAre(TransferKind::kTracks, TransferKind::kWaypoints));
    EXPECT_THAT(host::kindsIn({}), IsEmpty());
}

TEST(SendCheck, FilesAreMissingThatAreNotThereOrDiffer)
{
    const support::TemporaryFolder folder;
    gps::SendPlan plan;
    plan.files.push_back({folder.put("same", "abc"), Action::kCreate, "abc", {}});
    EXPECT_THAT(host::missingFiles(plan), IsEmpty());
    plan.files.push_back({folder.put("other", "abd"), Action::kMerge, "abc", {}});
    plan.files.push_back({folder.path("none"), Action::kCreate, "", {}});
    plan.files.push_back({folder.path("left"), Action::kSkip, "abc", {}});
    plan.files.push_back({folder.makeFolder("folder"), Action::kCreate, "", {}});
    const auto missing = host::missingFiles(plan);
    ASSERT_EQ(missing.size(), 3U);
    EXPECT_EQ(missing[0].path(), folder.path("other"));
    EXPECT_EQ(missing[1].path(), folder.path("none"));
    EXPECT_EQ(missing[1].description(), "A file that was sent is not on the device");
    EXPECT_EQ(missing[2].path(), folder.path("folder"));
    EXPECT_EQ(missing[2].description(), "A file that was sent cannot be read back from the device");
}

TEST(SendCheck, OnlyAFileToBeMadeIsForeseenToBeMissing)
{
    gps::SendPlan plan;
    plan.files.push_back({"/made", Action::kCreate, "", {}});
    plan.files.push_back({"/merged", Action::kMerge, "", {}});
    EXPECT_TRUE(host::isForeseen(unreadable("/made", gps::FileErrorCode::kReadNoSuchFile), plan));
    EXPECT_FALSE(
        host::isForeseen(unreadable("/merged", gps::FileErrorCode::kReadNoSuchFile), plan));
    EXPECT_FALSE(host::isForeseen(unreadable("/other", gps::FileErrorCode::kReadNoSuchFile), plan));
    EXPECT_FALSE(
        host::isForeseen(unreadable("/made", gps::FileErrorCode::kReadNoPermission), plan));
    EXPECT_FALSE(
        host::isForeseen(gps::makeFileError(gps::FileErrorCode::kWriteNoSpace, "/made"), plan));
}

TEST(SendCheck, OnlyTheErrorOfAPresentFileThatThePlanNamesIsForeseen)
{
    using enum gps::FileErrorCode;
    gps::SendPlan plan;
    plan.files.push_back({"/lost", Action::kMerge, "", gps::makeFileError(kReadNotAscii, "/lost")});
    plan.files.push_back({"/left", Action::kSkip, "", gps::makeFileError(kReadNotAscii, "/left")});
    EXPECT_TRUE(host::isForeseen(unreadable("/lost", kReadNotAscii), plan));
    EXPECT_FALSE(host::isForeseen(unreadable("/lost", kReadNoPermission), plan));
    EXPECT_FALSE(host::isForeseen(unreadable("/left", kReadNotAscii), plan));
    EXPECT_FALSE(host::isForeseen(gps::makeFileError(kWriteNoSpace, "/lost"), plan));
}

} // namespace
