// SPDX-License-Identifier: MIT

#include "host/transfer/SendCheck.h"

#include "host/FakeDriver.h"
#include "support/TemporaryFolder.h"

#include <platform/System/FileManager.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <sstream>

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
    const auto files = host::checkFiles(plan, {});
    ASSERT_EQ(files.size(), plan.files.size());
    EXPECT_EQ(files[0].path, folder.path("same"));
    EXPECT_EQ(files[0].result, Result::kWritten);
    EXPECT_EQ(files[1].result, Result::kDifferent);
    EXPECT_EQ(files[2].result, Result::kMissing);
    EXPECT_EQ(files[3].result, Result::kUnreadable);
    EXPECT_EQ(files[4].result, Result::kBlocked);
    EXPECT_EQ(files[5].result, Result::kNothingToWrite);
}

TEST(SendCheck, NothingIsKnownOfAFileWhoseFolderIsGone)
{
    const support::TemporaryFolder folder;
    gps::SendPlan plan;
    plan.files.push_back({folder.path("Points/p"), Action::kMerge, "abc", {}});
    EXPECT_EQ(host::checkFiles(plan, {folder.path("Points")})[0].result, Result::kUnreadable);
    EXPECT_EQ(host::checkFiles(plan, {folder.path("Routes")})[0].result, Result::kMissing)
        << "the folder did not exist before";
    folder.makeFolder("Points");
    EXPECT_EQ(host::checkFiles(plan, {folder.path("Points")})[0].result, Result::kMissing);
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

// A device whose files hold one name in each line.
class LostRecords : public testing::Test {
protected:
    LostRecords()
    {
        driver_.decode = [](std::string_view, std::string_view content) {
            gps::Array records;
            std::istringstream lines{std::string{content}};
            for (std::string name; std::getline(lines, name);)
                records.emplace_back(gps::Dictionary{{"name", name}});
            return gps::Dictionary{{"waypoint", std::move(records)}};
        };
    }

    // The file before the send held "A" and "B", and the plan adds "C".
    [[nodiscard]] host::SentFile check(Result result = Result::kDifferent) const
    {
        host::SentFile file{path_, result};
        host::putBackIfLost({path_, kBefore, beforeError_},
                            {path_, Action::kMerge, "A\nB\nC\n", {}}, driver_, file);
        return file;
    }

    static constexpr char kBefore[] = "A\nB\n";
    support::TemporaryFolder folder_;
    support::FakeFileDriver driver_;
    std::string path_ = folder_.path("file");
    std::optional<gps::Error> beforeError_;
};

TEST_F(LostRecords, FileThatHoldsAllPlannedRecordsHasOnlyBeenChangedByAnother)
{
    const gps::PlannedFile planned{path_, Action::kMerge, "A\nB\nC\n", {}};
    const auto holds = [&](const char* content) {
        folder_.put("file", content);
        return host::holdsPlannedRecords(planned, driver_);
    };
    EXPECT_TRUE(holds("A\nB\nC\n"));
    EXPECT_TRUE(holds("other\nC\nB\nA\n"));
    EXPECT_FALSE(holds("A\nB\nother\n")) << "without the one that was sent";
    EXPECT_FALSE(holds("B\nC\nother\n")) << "without one of the device";
    EXPECT_FALSE(holds(""));
    std::filesystem::remove(path_);
    EXPECT_FALSE(host::holdsPlannedRecords(planned, driver_));
}

TEST(HoldsPlannedRecords, NumbersOfRoutesDoNotCountAndTheirPointsDo)
{
    const support::TemporaryFolder folder;
    support::FakeFileDriver driver;
    driver.decode = [](std::string_view, std::string_view content) -> gps::Dictionary {
        gps::Dictionary route{{"name", "R"}, {"number", content == "second" ? 2 : 1}};
        route.set("points", gps::Array{gps::Dictionary{{"name", content == "other" ? "Q" : "P"}}});
        return {{"route", gps::Array{route}}};
    };
    const gps::PlannedFile planned{folder.put("r.rte", "second"), Action::kMerge, "first", {}};
    EXPECT_TRUE(host::holdsPlannedRecords(planned, driver));
    folder.put("r.rte", "other");
    EXPECT_FALSE(host::holdsPlannedRecords(planned, driver));
}

TEST_F(LostRecords, FileThatWasMergedFromNothingIsPutBack)
{
    folder_.put("file", "C\n");
    const auto file = check();
    EXPECT_EQ(file.result, Result::kPutBack);
    EXPECT_EQ(file.lostRecords, 2U);
    EXPECT_EQ(folder_.read("file"), kBefore);
}

TEST_F(LostRecords, FileThatIsGoneIsPutBack)
{
    EXPECT_EQ(check(Result::kMissing).result, Result::kPutBack);
    EXPECT_EQ(folder_.read("file"), kBefore);
}

TEST_F(LostRecords, FileThatLostNothingIsLeftAlone)
{
    for (const auto* content : {"A\nB\n", "B\nA\nD\n"}) {
        folder_.put("file", content);
        EXPECT_EQ(check().result, Result::kDifferent);
        EXPECT_EQ(folder_.read("file"), content);
    }
}

TEST_F(LostRecords, FileThatIsAsPlannedOrCannotBeReadIsLeftAlone)
{
    folder_.put("file", "C\n");
    EXPECT_EQ(check(Result::kWritten).result, Result::kWritten);
    EXPECT_EQ(check(Result::kUnreadable).result, Result::kUnreadable);
    EXPECT_EQ(folder_.read("file"), "C\n");
}

TEST_F(LostRecords, FileThatWasNotTextBeforeIsNotPutBack)
{
    folder_.put("file", "C\n");
    beforeError_ = gps::makeFileError(gps::FileErrorCode::kReadNotAscii, path_);
    EXPECT_EQ(check().result, Result::kDifferent);
    EXPECT_EQ(folder_.read("file"), "C\n");
}

TEST_F(LostRecords, FileThatCannotBePutBackIsLost)
{
    std::filesystem::create_directories(path_ + "/in the way");
    const auto file = check(Result::kMissing);
    EXPECT_EQ(file.result, Result::kLost);
    EXPECT_EQ(file.lostRecords, 2U);
    EXPECT_TRUE(file.writeError);
}

TEST(SendCheck, FileIsAsBeforeIfItHoldsWhatItHeldOrIsStillMissing)
{
    const support::TemporaryFolder folder;
    const gps::DeviceFile before{folder.put("a", "old"), "old", {}};
    const auto asBefore = [&](Result result, const gps::DeviceFile* old) {
        return host::isAsBefore({before.path, result}, old);
    };
    EXPECT_TRUE(asBefore(Result::kDifferent, &before));
    EXPECT_FALSE(asBefore(Result::kDifferent, nullptr)) << "it did not exist";
    EXPECT_TRUE(asBefore(Result::kMissing, nullptr));
    EXPECT_FALSE(asBefore(Result::kMissing, &before)) << "it is gone";
    for (const auto result : {Result::kPutBack, Result::kBlocked, Result::kNothingToWrite})
        EXPECT_TRUE(asBefore(result, &before));
    for (const auto result : {Result::kWritten, Result::kUnreadable, Result::kLost})
        EXPECT_FALSE(asBefore(result, &before));
    folder.put("a", "other");
    EXPECT_FALSE(asBefore(Result::kDifferent, &before));
}

gps::SendPlan planWithBlocked(std::string_view kind)
{
    gps::SendPlan plan;
    plan.files.push_back({"/a", Action::kSkip, "",
                          gps::makeFileError(gps::FileErrorCode::kReadUnknown, "/a"), kind});
    plan.files.push_back({"/b", Action::kSkip, "", {}, "tracks"});
    return plan;
}

TEST(WithoutBlocked, OnlyTheKindOfABlockedFileIsLeftOut)
{
    const gps::Dictionary camp{{"name", "Camp"}};
    const gps::Dictionary cache{{"name", "GC1"}, {"symbol", "Geocache"}};
    const gps::Dictionary data{
        {"track", gps::Array{1}}, {"waypoint", gps::Array{camp, cache}}, {"route", gps::Array{2}}};
    const auto without = [&](std::string_view kind) {
        return *host::withoutBlocked(data, planWithBlocked(kind));
    };
    auto rest = without("tracks");
    EXPECT_EQ(rest.find("track"), nullptr);
    EXPECT_EQ(rest.findArray("waypoint")->size(), 2U);
    EXPECT_NE(rest.find("route"), nullptr);
    EXPECT_EQ(without("routes").find("route"), nullptr);
    EXPECT_EQ(*without("waypoints").findArray("waypoint"), gps::Array{cache});
    EXPECT_EQ(*without("geocaches").findArray("waypoint"), gps::Array{camp});
}

TEST(WithoutBlocked, ListThatBecomesEmptyIsRemoved)
{
    const gps::Dictionary data{{"waypoint", gps::Array{gps::Dictionary{{"name", "Camp"}}}}};
    EXPECT_EQ(host::withoutBlocked(data, planWithBlocked("waypoints"))->find("waypoint"), nullptr);
}

TEST(WithoutBlocked, FilesWithNothingToWriteBlockNothing)
{
    gps::SendPlan plan;
    plan.files.push_back({"/b", Action::kSkip, "", {}, "tracks"});
    EXPECT_EQ(host::withoutBlocked({{"track", gps::Array{1}}}, plan), std::nullopt);
}

} // namespace
