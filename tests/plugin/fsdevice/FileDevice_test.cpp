// SPDX-License-Identifier: MIT
// What the driver reports about its device before a send.

#include "../../support/ReceiverFolder.h"

#include <gps/GPSFileDevice.h>
#include <plugin/fsdevice/DeviceFileWriters.h>
#include <plugin/fsdevice/MagellanGPSPlugin.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <memory>
#include <string>
#include <utility>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class FileDevice : public testing::Test {
protected:
    FileDevice()
    {
        receiver.unitFile("12345");
        for (const auto* name : {"My POIs", "Track Logs"})
            receiver.folder().makeFolder(name);
    }

    /// The interface of a new driver, as a host asks for it.
    static std::shared_ptr<gps::GPSFileDevice> fileDevice()
    {
        return std::dynamic_pointer_cast<gps::GPSFileDevice>(
            magellan::MagellanGPSPlugin::getPluginForClass("GPSPlugIn"));
    }
    [[nodiscard]] std::shared_ptr<gps::GPSFileDevice> driver() const
    {
        const support::TestFolders folders{{receiver.path()}};
        return fileDevice();
    }

    support::ReceiverFolder receiver;
};

TEST_F(FileDevice, WithoutADeviceThereAreNoFoldersAndNoIdentifier)
{
    const support::TestFolders none{{}};
    const auto lonely = fileDevice();
    EXPECT_THAT(lonely->dataFolders(), IsEmpty());
    EXPECT_EQ(lonely->deviceIdentifier(), std::nullopt);
}

TEST_F(FileDevice, SnapshotOfAReadableDeviceIsComplete)
{
    const auto snapshot = driver()->takeSnapshot();
    EXPECT_THAT(snapshot->failures(), IsEmpty()) << "a missing language file is not a failure";
    EXPECT_EQ(snapshot->identifier(), "12345");
}

TEST_F(FileDevice, DescriptionThatCannotBeReadIsAFailureOfTheSnapshot)
{
    receiver.folder().makeFolder("USBTRANS/LANGUAGE.DAT");
    auto snapshot = driver()->takeSnapshot();
    ASSERT_THAT(snapshot->failures(), SizeIs(1));
    EXPECT_EQ(snapshot->failures()[0].path(), receiver.path("USBTRANS/LANGUAGE.DAT"));

    receiver.folder().put("USBTRANS/UNIT_ID.DAT", std::string((1U << 20) + 1, 'x'));
    snapshot = driver()->takeSnapshot();
    EXPECT_THAT(snapshot->failures(), SizeIs(2));
    EXPECT_EQ(snapshot->identifier(), std::nullopt);
}

TEST_F(FileDevice, DataFolderWhoseStateIsNotKnownIsAFailureOfTheSnapshot)
{
    receiver.languageFile({"MyPOIs=My POIs", "Routes=loop"});
    std::filesystem::create_symlink("loop", receiver.path("loop"));
    const auto snapshot = driver()->takeSnapshot();
    EXPECT_THAT(snapshot->dataFolders(), ElementsAre(receiver.path("My POIs")));
    ASSERT_THAT(snapshot->failures(), SizeIs(1));
    EXPECT_EQ(snapshot->failures()[0].path(), receiver.path("loop"));
}

TEST_F(FileDevice, DataFoldersAreThoseOfTheFourThatExistEachOnce)
{
    receiver.languageFile(
        {"MyPOIs=My POIs", "Geocaches=My POIs", "Routes=gone", "TrackLogs=Track Logs"});
    EXPECT_THAT(driver()->dataFolders(),
                ElementsAre(receiver.path("My POIs"), receiver.path("Track Logs")));
}

TEST_F(FileDevice, IdentifierIsTheSerialNumber)
{
    EXPECT_EQ(driver()->deviceIdentifier(), "12345");
    EXPECT_EQ(gps::GPSStorageAuthorization::openAccessCount(), 0U);
    receiver.put("USBTRANS/UNIT_ID.DAT", {"Serial Number = 12345"});
    EXPECT_EQ(driver()->deviceIdentifier(), std::nullopt);
}

TEST_F(FileDevice, DeviceSymbolIsTheIconThatIsWritten)
{
    for (const auto& [symbol, icon] :
         {std::pair{"Airport", "e"}, {"zz", "zz"}, {"", "a"}, {"No such symbol", "a"}}) {
        EXPECT_EQ(driver()->deviceSymbol(symbol), icon);
        if (*symbol == '\0')
            continue; // the icon of records without a symbol
        const gps::Dictionary record{{"name", "A"}, {"symbol", symbol}, {"point", gps::GPSPoint{}}};
        EXPECT_THAT(magellan::mergedWaypointText({record}, ""),
                    HasSubstr(std::string{",A,,"} + icon + '*'));
    }
}

TEST_F(FileDevice, DeviceTextsHold81CharactersAndNames20OfThem)
{
    EXPECT_THAT(driver()->deviceCharacters(), SizeIs(81));
    EXPECT_EQ(driver()->longestName(), 20U);
}

} // namespace
