// SPDX-License-Identifier: MIT
// Receivers among the mounted volumes, through the real device database on a mocked device tree and
// mount table.

#include <plugin/fsdevice/MagellanGPSPlugin.h>
#include <support/ReceiverFolder.h>
#include <support/RecordingReceiver.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <platform_udev/Testbed.h>

namespace magellan {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class MountedReceiversTest : public testing::Test {
protected:
    MountedReceiversTest()
    {
        testbed_.addStickAndInternalDisk();
        testbed_.mount("");
    }

    /// The locations of the devices that the driver lists after a refresh.
    [[nodiscard]] std::vector<std::string> found() const
    {
        driver_->refreshDeviceList();
        std::vector<std::string> locations;
        for (const auto& device : driver_->deviceList())
            locations.push_back(*device.as<gps::Dictionary>()->findString("location"));
        return locations;
    }

    support::Testbed testbed_;
    support::TestFolders folders_{{}};
    std::shared_ptr<MagellanGPSPlugin> driver_ = MagellanGPSPlugin::getPluginForClass("GPSPlugIn");
    support::ReceiverFolder receiver_;
};

TEST_F(MountedReceiversTest, AReceiverOnARemovableVolumeIsListedAndOneOnAnInternalDiskIsNot)
{
    receiver_.unitFile("12345");
    const support::ReceiverFolder internal;
    internal.unitFile("1");
    testbed_.mount(testbed_.mountLine("8:1", internal.path()) +
                   testbed_.mountLine("8:17", receiver_.path()));
    EXPECT_THAT(found(), ElementsAre(receiver_.path()));
    EXPECT_TRUE(driver_->isReady());
    EXPECT_EQ(*driver_->fsDevice()->findString("name"), "Magellan device 12345");
}

TEST_F(MountedReceiversTest, ARemovableVolumeWithoutAUnitFileIsNotAReceiver)
{
    testbed_.mount(testbed_.mountLine("8:17", receiver_.path()));
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(MountedReceiversTest, AVolumeWithoutADiskOrWithAnUnknownOneIsLeftOut)
{
    receiver_.unitFile("1");
    testbed_.mount(testbed_.mountLine("0:42", receiver_.path()) +
                   testbed_.mountLine("8:65", receiver_.path()));
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(MountedReceiversTest, VolumesAreListedInTheMountTablesOrderBeforeTheTestFolders)
{
    const support::ReceiverFolder other;
    const support::ReceiverFolder folder;
    receiver_.unitFile("1");
    other.unitFile("2");
    folder.unitFile("3");
    support::TestFolders::set({folder.path()});
    testbed_.mount(testbed_.mountLine("8:16", receiver_.path()) +
                   testbed_.mountLine("8:17", other.path()));
    EXPECT_THAT(found(), ElementsAre(receiver_.path(), other.path(), folder.path()));
    testbed_.mount(testbed_.mountLine("8:17", other.path()) +
                   testbed_.mountLine("8:16", receiver_.path()));
    EXPECT_THAT(found(), ElementsAre(other.path(), receiver_.path(), folder.path()));
}

TEST_F(MountedReceiversTest, ARefreshFollowsMountsAndUnmounts)
{
    receiver_.unitFile("1");
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_FALSE(driver_->isReady());
    testbed_.mount(testbed_.mountLine("8:17", receiver_.path()));
    EXPECT_THAT(found(), ElementsAre(receiver_.path()));
    EXPECT_TRUE(driver_->isReady());
    testbed_.mount("");
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_FALSE(driver_->isReady());
}

TEST_F(MountedReceiversTest, TheSearchReportsTheSortAndTheVerdictOfEveryVolume)
{
    using Verdict = gps::SearchedLocation::Verdict;
    const support::ReceiverFolder other;
    receiver_.unitFile("1");
    testbed_.mount(
        testbed_.mountLine("8:1", receiver_.path()) + testbed_.mountLine("0:42", receiver_.path()) +
        testbed_.mountLine("8:65", receiver_.path()) +
        testbed_.mountLine("8:17", receiver_.path()) + testbed_.mountLine("8:17", other.path()));
    const std::vector<std::pair<std::string, Verdict>> expected{
        {"built-in volume", Verdict::kSkipped},
        {"volume without a disk behind it", Verdict::kSkipped},
        {"volume without a disk behind it", Verdict::kSkipped},
        {"removable volume", Verdict::kAccepted},
        {"removable volume", Verdict::kRejected}};
    const auto locations = driver_->searchedLocations();
    ASSERT_EQ(locations.size(), expected.size());
    for (std::size_t i = 0; i < locations.size(); ++i) {
        EXPECT_EQ(locations[i].sort, expected[i].first) << i;
        EXPECT_EQ(locations[i].verdict, expected[i].second) << i;
        EXPECT_EQ(locations[i].location, i == 4 ? other.path() : receiver_.path());
    }
    EXPECT_THAT(found(), ElementsAre(receiver_.path()));
}

TEST_F(MountedReceiversTest, AVolumeWithASpaceInItsPathCanBeRead)
{
    receiver_.put("GPS DISK/USBTRANS/UNIT_ID.DAT", {"Serial Number=7"});
    receiver_.put("GPS DISK/Track Logs/t.log",
                  {support::sentence("PMGNTRK,4600.000,N,00730.000,E,00500,M,120000,A,T,290208")});
    testbed_.mount(testbed_.mountLine("8:17", receiver_.path() + "/GPS\\040DISK"));
    EXPECT_THAT(found(), ElementsAre(receiver_.path("GPS DISK")));
    const auto status = std::make_shared<support::RecordingReceiver>();
    ASSERT_EQ(driver_->gpsRunAcquire(status, {}), std::nullopt);
    ASSERT_TRUE(status->waitUntilIdle());
    EXPECT_THAT(status->calls(), Contains("newTrack {name = \"T\"}"));
}

} // namespace
} // namespace magellan
