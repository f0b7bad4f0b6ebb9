// SPDX-License-Identifier: MIT
// How the driver explains what it found at a test folder. The tests in plugin_udev do this for
// volumes, on a mocked device tree.

#include <plugin/fsdevice/MagellanGPSPlugin.h>
#include <support/AsNobody.h>
#include <support/ReceiverFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace magellan {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Verdict = gps::SearchedLocation::Verdict;

class DeviceSearchTest : public testing::Test {
protected:
    /// Searches the receiver's folder.
    [[nodiscard]] gps::SearchedLocation search() const
    {
        support::TestFolders::set({receiver_.path()});
        const auto places = driver_->searchedLocations();
        EXPECT_FALSE(places.empty());
        const auto place = places.back();
        EXPECT_EQ(place.location, receiver_.path());
        EXPECT_EQ(place.sort, "test folder");

        driver_->refreshDeviceList();
        EXPECT_EQ(driver_->deviceList().size(), place.verdict == Verdict::kAccepted ? 1U : 0U)
            << place.reason;
        return place;
    }

    support::TestFolders folders_{{}};
    std::shared_ptr<MagellanGPSPlugin> driver_ = MagellanGPSPlugin::getPluginForClass("GPSPlugIn");
    support::ReceiverFolder receiver_;
};

TEST_F(DeviceSearchTest, ReceiverIsAcceptedUnderItsName)
{
    receiver_.unitFile("12345");
    const auto place = search();
    EXPECT_EQ(place.verdict, Verdict::kAccepted);
    EXPECT_THAT(place.reason, HasSubstr("Magellan device 12345"));
    EXPECT_THAT(place.advice, IsEmpty());
}

TEST_F(DeviceSearchTest, FolderWithoutAUnitFileIsNotAReceiver)
{
    const auto place = search();
    EXPECT_EQ(place.verdict, Verdict::kRejected);
    EXPECT_THAT(place.reason, HasSubstr("USBTRANS/UNIT_ID.DAT"));
    EXPECT_THAT(place.advice, IsEmpty());
}

TEST_F(DeviceSearchTest, FolderThatCannotBeReadHasAdvice)
{
    receiver_.unitFile("12345");
    std::filesystem::permissions(receiver_.path("USBTRANS"), std::filesystem::perms::none);
    const support::AsNobody nobody;
    const auto place = search();
    EXPECT_EQ(place.verdict, Verdict::kRejected);
    EXPECT_THAT(place.reason, HasSubstr("another user"));
    EXPECT_THAT(place.advice, Not(IsEmpty()));
}

TEST_F(DeviceSearchTest, UnitFileWithoutReadPermissionIsAcceptedWithAdvice)
{
    std::filesystem::permissions(receiver_.unitFile("12345"), std::filesystem::perms::none);
    const support::AsNobody nobody;
    const auto place = search();
    EXPECT_EQ(place.verdict, Verdict::kAccepted);
    EXPECT_THAT(place.reason, HasSubstr("may not be read"));
    EXPECT_THAT(place.advice, Not(IsEmpty()));
}

TEST_F(DeviceSearchTest, UnitFileThatIsNotTextIsAcceptedWithTheReason)
{
    receiver_.unitFile("\xFF");
    const auto place = search();
    EXPECT_EQ(place.verdict, Verdict::kAccepted);
    EXPECT_THAT(place.reason, HasSubstr("cannot be read as text"));
}

TEST_F(DeviceSearchTest, SearchChangesNeitherTheListNorTheSelection)
{
    receiver_.unitFile("1");
    const support::ReceiverFolder other;
    other.unitFile("2");
    support::TestFolders::set({receiver_.path(), other.path()});
    driver_->refreshDeviceList();
    driver_->setFsDevice(*driver_->deviceList().back().as<gps::Dictionary>());
    const auto selected = driver_->fsDevice();
    support::TestFolders::set({});
    (void)driver_->searchedLocations();
    EXPECT_EQ(driver_->deviceList().size(), 2U);
    EXPECT_EQ(driver_->fsDevice(), selected);
}

} // namespace
} // namespace magellan
