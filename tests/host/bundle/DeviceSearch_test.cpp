// SPDX-License-Identifier: MIT
// Errors that explain what drivers found in their search.

#include "host/bundle/DeviceSearch.h"

#include "host/FakeDriver.h"
#include "host/base/Sentences.h"
#include "support/TemporaryFolder.h"

#include <gps/GPSDeviceSearch.h>

#include <gtest/gtest.h>

#include <memory>

namespace {

using host::sentencesOf;
using Verdict = gps::SearchedLocation::Verdict;

struct SearchDriver final : support::FakeDriver, gps::GPSDeviceSearch {
    std::vector<gps::SearchedLocation> searchedLocations() const override { return locations; }

    std::vector<gps::SearchedLocation> locations;
};

class DeviceSearch : public testing::Test {
protected:
    DeviceSearch() { serial_->serial = true; }

    std::string noReceiver() const { return sentencesOf(host::noReceiverError(drivers_)); }

    const support::TemporaryFolder stick_;
    std::shared_ptr<SearchDriver> disk_ = std::make_shared<SearchDriver>();
    std::shared_ptr<SearchDriver> serial_ = std::make_shared<SearchDriver>();
    std::vector<host::Driver> drivers_{disk_, serial_, std::make_shared<support::FakeDriver>()};
};

TEST_F(DeviceSearch, NothingWasFound)
{
    EXPECT_EQ(noReceiver(), "No receiver is mounted. Connect a receiver and wait until it is "
                            "mounted; \"magellangps devices --explain\" shows more.");
}

TEST_F(DeviceSearch, EachExaminedVolumeIsNamedAndTheOthersAreCounted)
{
    disk_->locations = {{"/", "disk", Verdict::kSkipped, "Never", ""},
                        {stick_.path(), "stick", Verdict::kRejected, "It has no file X", ""},
                        {"/gone", "test folder", Verdict::kRejected, "It has no file X", ""}};
    EXPECT_EQ(noReceiver(),
              "No receiver is mounted. Looked at: " + stick_.path() +
                  " (it has no file X); /gone (there is no such folder); 1 volume that cannot be a "
                  "receiver. Connect a receiver and wait until it is mounted; \"magellangps "
                  "devices --explain\" shows more.");
}

TEST_F(DeviceSearch, PortsAreOffered)
{
    disk_->locations = {{"/", "disk", Verdict::kSkipped, "Never", ""},
                        {"/proc", "none", Verdict::kSkipped, "Never", ""}};
    serial_->locations = {{"/dev/ttyS0", "serial port", Verdict::kAccepted, "Ask", ""},
                          {"/dev/ttyS1", "serial port", Verdict::kAccepted, "Ask", ""}};
    EXPECT_EQ(
        noReceiver(),
        "No receiver is mounted. Looked at: 2 volumes that cannot be a receiver; /dev/ttyS0, "
        "/dev/ttyS1 (serial ports, asked only on request). Connect a receiver and wait until "
        "it is mounted, or name a serial port with --device /dev/ttyS0; \"magellangps devices "
        "--explain\" shows more.");
}

TEST_F(DeviceSearch, ReceiverThatCannotBeUsedIsTheWholeAnswer)
{
    disk_->locations = {{"/a", "stick", Verdict::kRejected, "It is empty", ""},
                        {"/b", "stick", Verdict::kAccepted, "It may not be read", "Allow it"}};
    EXPECT_EQ(noReceiver(), "It may not be read. Allow it. Path: /b");
}

TEST_F(DeviceSearch, NamedFolderGetsItsReason)
{
    disk_->locations = {{"/a", "stick", Verdict::kRejected, "It is empty", ""},
                        {"/b", "stick", Verdict::kRejected, "It is locked", "Unlock it"}};
    EXPECT_EQ(sentencesOf(*host::explainFolder(drivers_, "/a")),
              "It is empty. If it is a memory card or a copy of one, read it with \"magellangps "
              "acquire --card '/a'\". Path: /a");
    EXPECT_EQ(sentencesOf(*host::explainFolder(drivers_, "/b")),
              "It is locked. Unlock it. Path: /b");
    EXPECT_FALSE(host::explainFolder(drivers_, "/c"));
}

} // namespace
