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
        const auto locations = driver_->searchedLocations();
        EXPECT_FALSE(locations.empty());
        const auto searched = locations.back();
        EXPECT_EQ(searched.location, receiver_.path());
        EXPECT_EQ(searched.sort, "test folder");

        driver_->refreshDeviceList();
        EXPECT_EQ(driver_->deviceList().size(), searched.verdict == Verdict::kAccepted ? 1U : 0U)
            << searched.reason;
        return searched;
    }

    support::TestFolders folders_{{}};
    std::shared_ptr<MagellanGPSPlugin> driver_ = MagellanGPSPlugin::getPluginForClass("GPSPlugIn");
    support::ReceiverFolder receiver_;
};

TEST_F(DeviceSearchTest, ReceiverIsAcceptedUnderItsName)
{
    receiver_.unitFile("12345");
    const auto searched = search();
    EXPECT_EQ(searched.verdict, Verdict::kAccepted);
    EXPECT_THAT(searched.reason, HasSubstr("Magellan device 12345"));
    EXPECT_THAT(searched.advice, IsEmpty());
}

TEST_F(DeviceSearchTest, FolderWithoutAUnitFileIsNotAReceiver)
{
    const auto searched = search();
    EXPECT_EQ(searched.verdict, Verdict::kRejected);
    EXPECT_THAT(searched.reason, HasSubstr("USBTRANS/UNIT_ID.DAT"));
    EXPECT_THAT(searched.advice, IsEmpty());
}

TEST_F(DeviceSearchTest, FolderThatCannotBeReadHasAdvice)
{
    receiver_.unitFile("12345");
    std::filesystem::permissions(receiver_.path("USBTRANS"), std::filesystem::perms::none);
    const support::AsNobody nobody;
    const auto searched = search();
    EXPECT_EQ(searched.verdict, Verdict::kRejected);
    EXPECT_THAT(searched.reason, HasSubstr("another user"));
    EXPECT_THAT(searched.advice, Not(IsEmpty()));
}

TEST_F(DeviceSearchTest, UnitFileWithoutReadPermissionIsAcceptedWithAdvice)
{
    std::filesystem::permissions(receiver_.unitFile("12345"), std::filesystem::perms::none);
    const support::AsNobody nobody;
    const auto searched = search();
    EXPECT_EQ(searched.verdict, Verdict::kAccepted);
    EXPECT_THAT(searched.reason, HasSubstr("may not be read"));
    EXPECT_THAT(searched.advice, Not(IsEmpty()));
}

TEST_F(DeviceSearchTest, UnitFileThatIsNotTextIsAcceptedWithTheReason)
{
    receiver_.unitFile("\xFF");
    const auto searched = search();
    EXPECT_EQ(searched.verdict, Verdict::kAccepted);
    EXPECT_THAT(searched.reason, HasSubstr("cannot be read as text"));
}

TEST_F(DeviceSearchTest, ModelAndFirmwareAreThoseOfTheUnitFile)
{
    receiver_.put("USBTRANS/UNIT_ID.DAT",
                  {"Serial Number=1", "Unit Type=Handheld", "Software Version=2.35"});
    const auto description = driver_->deviceDescription(receiver_.path());
    EXPECT_EQ(description.model, "Handheld");
    EXPECT_EQ(description.firmware, "2.35");
}

TEST_F(DeviceSearchTest, ModelAndFirmwareThatAReceiverDoesNotNameAreMissing)
{
    receiver_.put("USBTRANS/UNIT_ID.DAT", {"Serial Number=1", "Unit Type="});
    EXPECT_EQ(driver_->deviceDescription(receiver_.path()).model, std::nullopt);
    EXPECT_EQ(driver_->deviceDescription(receiver_.path()).firmware, std::nullopt);
    EXPECT_EQ(driver_->deviceDescription("/nowhere").model, std::nullopt);
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
