// SPDX-License-Identifier: MIT

#include "host/transfer/SendCheck.h"

#include "support/TemporaryFolder.h"

#include <platform/System/FileManager.h>

#include <gmock/gmock.h>

namespace {

using Action = gps::PlannedFile::Action;
using Result = host::SentFile::Result;
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

TEST(SendCheck, EachFileIsComparedWithThePlan)
{
    const support::TemporaryFolder folder;
    const auto why = gps::makeFileError(gps::FileErrorCode::kNoSuchFolder, folder.path("blocked"));
    gps::SendPlan plan;
    plan.files.push_back({folder.put("same", "abc"), Action::kCreate, "abc", {}});
    plan.files.push_back({folder.put("other", "abd"), Action::kMerge, "abc", {}});
    plan.files.push_back({folder.path("missing"), Action::kCreate, "", {}});
    plan.files.push_back({folder.makeFolder("folder"), Action::kCreate, "", {}});
    plan.files.push_back({folder.path("blocked"), Action::kSkip, "abc", why});
    plan.files.push_back({folder.path("skipped"), Action::kSkip, "abc", {}});
    const auto files = host::checkFiles(plan);
    ASSERT_EQ(files.size(), plan.files.size());
    EXPECT_EQ(files[0].path, folder.path("same"));
    EXPECT_EQ(files[0].result, Result::kWritten);
    EXPECT_EQ(files[1].result, Result::kDifferent);
    EXPECT_EQ(files[2].result, Result::kMissing);
    EXPECT_EQ(files[3].result, Result::kUnreadable);
    EXPECT_EQ(files[4].result, Result::kBlocked);
    EXPECT_EQ(files[5].result, Result::kNothingToWrite);
}

TEST(SendCheck, OnlyAFileToBeCreatedIsExpectedToBeMissing)
{
    gps::SendPlan plan;
    plan.files.push_back({"/made", Action::kCreate, "", {}});
    plan.files.push_back({"/merged", Action::kMerge, "", {}});
    EXPECT_TRUE(host::isExpected(unreadable("/made", gps::FileErrorCode::kReadNoSuchFile), plan));
    EXPECT_FALSE(
        host::isExpected(unreadable("/merged", gps::FileErrorCode::kReadNoSuchFile), plan));
    EXPECT_FALSE(host::isExpected(unreadable("/other", gps::FileErrorCode::kReadNoSuchFile), plan));
    EXPECT_FALSE(
        host::isExpected(unreadable("/made", gps::FileErrorCode::kReadNoPermission), plan));
    EXPECT_FALSE(
        host::isExpected(gps::makeFileError(gps::FileErrorCode::kWriteNoSpace, "/made"), plan));
}

TEST(SendCheck, OnlyTheErrorOfAPresentFileInThePlanIsExpected)
{
    using enum gps::FileErrorCode;
    gps::SendPlan plan;
    plan.files.push_back({"/lost", Action::kMerge, "", gps::makeFileError(kReadNotAscii, "/lost")});
    plan.files.push_back({"/left", Action::kSkip, "", gps::makeFileError(kReadNotAscii, "/left")});
    EXPECT_TRUE(host::isExpected(unreadable("/lost", kReadNotAscii), plan));
    EXPECT_FALSE(host::isExpected(unreadable("/lost", kReadNoPermission), plan));
    EXPECT_FALSE(host::isExpected(unreadable("/left", kReadNotAscii), plan));
    EXPECT_FALSE(host::isExpected(gps::makeFileError(kWriteNoSpace, "/lost"), plan));
}

} // namespace
