// SPDX-License-Identifier: MIT

#include "host/watching/KnownRecords.h"

#include "platform/System/OneFault.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>

namespace {

using host::Digest;
using host::KnownRecords;
using testing::HasSubstr;

class KnownRecordsTest : public testing::Test {
protected:
    /// A list that holds these keys, read back from its file.
    [[nodiscard]] KnownRecords known(const host::RecordKeys& keys = {}) const
    {
        if (!keys.empty() && KnownRecords{path_}.add(keys))
            ADD_FAILURE() << "not written";
        KnownRecords list{path_};
        EXPECT_EQ(list.load(), std::nullopt);
        return list;
    }

    support::TemporaryFolder folder_;
    std::string path_ = folder_.path("state/42.txt");
};

TEST_F(KnownRecordsTest, MissingFileIsAnEmptyList)
{
    EXPECT_FALSE(known().contains("waypoint 1"));
    EXPECT_FALSE(known().hasTrackFrom(0));
}

TEST_F(KnownRecordsTest, KeysAreKnownToTheNextRun)
{
    auto list = known({"waypoint 1", "track 100 5"});
    EXPECT_EQ(list.add({"route 2"}), std::nullopt);
    const auto later = known();
    for (const char* key : {"waypoint 1", "track 100 5", "route 2"})
        EXPECT_TRUE(later.contains(key)) << key;
    EXPECT_FALSE(later.contains("waypoint"));
}

TEST_F(KnownRecordsTest, TrackIsFoundByItsWholeFirstTime)
{
    const auto list = known({"track 100 5", "track -3 1"});
    EXPECT_TRUE(list.hasTrackFrom(100));
    EXPECT_TRUE(list.hasTrackFrom(-3));
    for (const int time : {1, 10, 99, 101, 1000, 3})
        EXPECT_FALSE(list.hasTrackFrom(time)) << time;
}

TEST_F(KnownRecordsTest, KeyOfATrackReplacesTheOneWithoutContentOfAnOlderVersion)
{
    auto list = known({"track 100 5", "track 100 6", "waypoint 1"});
    EXPECT_EQ(list.add({"track 100 5 0123", "waypoint 1 2"}), std::nullopt);
    const auto later = known();
    EXPECT_FALSE(later.contains("track 100 5"));
    for (const char* key : {"track 100 5 0123", "track 100 6", "waypoint 1", "waypoint 1 2"})
        EXPECT_TRUE(later.contains(key)) << key;
}

TEST_F(KnownRecordsTest, AnyDamageIsNoticedAndTheFileRenamed)
{
    (void)known({"waypoint 1", "waypoint 2"});
    const auto whole = folder_.read("state/42.txt");
    std::vector<std::string> damages{"", "\n", std::string{whole}.append("x"),
                                     std::string(4096, '\0')};
    for (std::size_t i = 0; i < whole.size(); ++i) {
        damages.push_back(whole.substr(0, i));
        damages.push_back(whole);
        damages.back()[i] ^= 1;
    }
    for (const auto& damage : damages) {
        folder_.put("state/42.txt", damage);
        KnownRecords list{path_};
        const auto note = list.load();
        ASSERT_TRUE(note) << damage;
        EXPECT_EQ(note->path(), path_ + ".damaged");
        EXPECT_EQ(folder_.read("state/42.txt.damaged"), damage);
        EXPECT_FALSE(std::filesystem::exists(path_));
        EXPECT_FALSE(list.contains("waypoint 1")) << damage;
    }
}

// Only a missing file is an empty list. Whatever else prevents reading may be gone the next time.
TEST_F(KnownRecordsTest, FileThatCannotBeReadIsReportedAndKeptAsItIs)
{
    (void)known({"waypoint 1"});
    const auto before = folder_.read("state/42.txt");
    for (const int error : {EACCES, EPERM, EIO, EMFILE, ENFILE, ENOMEM, ELOOP, ENOTDIR, ENXIO}) {
        support::OneFault files{"open", error};
        KnownRecords list{path_, files};
        const auto failure = list.load();
        ASSERT_TRUE(files.happened());
        ASSERT_TRUE(failure) << error;
        EXPECT_THAT(*failure->description(), HasSubstr(std::strerror(error)));
        EXPECT_EQ(failure->path(), path_);
        EXPECT_FALSE(list.contains("waypoint 1"));
        EXPECT_FALSE(list.add({"waypoint 2"}));
        EXPECT_EQ(folder_.read("state/42.txt"), before) << error;
        EXPECT_FALSE(std::filesystem::exists(path_ + ".damaged")) << error;
    }
    support::OneFault files{"open", ENOENT};
    KnownRecords list{path_, files};
    EXPECT_FALSE(list.load()) << "no such file";
}

TEST_F(KnownRecordsTest, ReadErrorPartwayIsNotDamage)
{
    (void)known({"waypoint 1"});
    const auto before = folder_.read("state/42.txt");
    for (const char* const call : {"read", "fstat"}) {
        support::OneFault files{call, EIO};
        KnownRecords list{path_, files};
        ASSERT_TRUE(list.load()) << call;
        EXPECT_FALSE(list.add({"waypoint 2"}));
        EXPECT_EQ(folder_.read("state/42.txt"), before) << call;
    }
}

TEST_F(KnownRecordsTest, ListIsWrittenAgainOnceItCanBeRead)
{
    (void)known({"waypoint 1"});
    support::OneFault files{"open", EIO};
    KnownRecords list{path_, files};
    EXPECT_TRUE(list.load());
    EXPECT_FALSE(list.load());
    EXPECT_FALSE(list.add({"waypoint 2"}));
    EXPECT_TRUE(known().contains("waypoint 1"));
    EXPECT_TRUE(known().contains("waypoint 2"));
}

TEST_F(KnownRecordsTest, OneFailedCallLosesNothingThatWasKnownAndIsReported)
{
    (void)known({"waypoint 1"});
    const auto before = folder_.read("state/42.txt");
    support::OneFault recorder;
    const auto addWith = [&](support::OneFault& files) {
        KnownRecords list{path_, files};
        if (auto failure = list.load())
            return failure;
        return list.add({"waypoint 2"});
    };
    ASSERT_FALSE(addWith(recorder));

    std::map<std::string, int> counts;
    for (const auto& call : recorder.calls()) {
        folder_.put("state/42.txt", before);
        support::OneFault files{call, EIO, ++counts[call]};
        const auto failure = addWith(files);
        const auto which = call + ' ' + std::to_string(counts[call]);
        EXPECT_TRUE(files.happened()) << which;
        EXPECT_FALSE(std::filesystem::exists(path_ + ".damaged")) << which;
        KnownRecords after{path_};
        EXPECT_FALSE(after.load()) << which;
        EXPECT_TRUE(after.contains("waypoint 1")) << which;
        EXPECT_TRUE(failure || after.contains("waypoint 2")) << which;
    }
}

TEST_F(KnownRecordsTest, FailureToWriteIsReturned)
{
    KnownRecords list{"/proc/none/42.txt"};
    const auto failure = list.add({"waypoint 1"});
    ASSERT_TRUE(failure);
    EXPECT_THAT(failure->path().value_or(""), HasSubstr("/proc/none"));
}

TEST(RecordKeys, EverythingInAWaypointCounts)
{
    const gps::GPSPoint point{46.5, 7.25, 1200, 0, 0};
    const gps::Dictionary record{{"name", "Camp"}, {"symbol", "Campground"}};
    const auto key = host::wayPointKey(point, record);
    EXPECT_THAT(key, testing::StartsWith("waypoint "));
    EXPECT_EQ(key, host::wayPointKey(point, record));
    EXPECT_NE(key, host::wayPointKey({46.5, 7.25, 1201, 0, 0}, record));
    EXPECT_NE(key, host::wayPointKey(point, {{"name", "Camp"}, {"symbol", "Hut"}}));
    EXPECT_NE(key, host::wayPointKey(point, {{"name", "Camp"}}));
}

TEST(RecordKeys, OrderCountsInADigest)
{
    Digest one;
    Digest other;
    one.add(gps::Dictionary{{"name", "A"}});
    one.add(gps::GPSPoint{1, 2, 3, 4, 5});
    other.add(gps::GPSPoint{1, 2, 3, 4, 5});
    other.add(gps::Dictionary{{"name", "A"}});
    EXPECT_NE(host::routeKey(one), host::routeKey(other));
}

TEST(RecordKeys, ContentOfATrackCountsOnlyIfItIsGiven)
{
    EXPECT_EQ(host::trackKey(100, 5, {}), "track 100 5");
    Digest content;
    content.add(gps::GPSPoint{});
    EXPECT_EQ(host::trackKey(0, 5, content), "track 0 5 " + content.text());
}

} // namespace
