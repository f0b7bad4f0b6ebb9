// SPDX-License-Identifier: MIT

#include "host/watching/WatchedDevices.h"

#include <gmock/gmock.h>

namespace {

using host::WatchedDevice;
using host::WatchedDevices;
using testing::ElementsAre;
using testing::IsEmpty;

const WatchedDevice kFirst{"magellan", "/media/A", "Device 1"};
const WatchedDevice kSecond{"magellan", "/media/B", "Device 2"};

TEST(WatchedDevices, DevicesThatAppearAndDisappearAreReturned)
{
    WatchedDevices devices;
    EXPECT_THAT(devices.update({kFirst}).appeared, ElementsAre(kFirst));
    EXPECT_THAT(devices.update({kFirst}).appeared, IsEmpty());
    const auto changes = devices.update({kSecond});
    EXPECT_THAT(changes.appeared, ElementsAre(kSecond));
    EXPECT_THAT(changes.gone, ElementsAre(kFirst));
}

TEST(WatchedDevices, DeviceThatIsListedTwiceCountsOnce)
{
    WatchedDevices devices;
    EXPECT_THAT(devices.update({kFirst, kSecond, kFirst}).appeared, ElementsAre(kFirst, kSecond));
    EXPECT_THAT(devices.due(), ElementsAre(kFirst, kSecond));
    EXPECT_THAT(devices.update({kSecond}).gone, ElementsAre(kFirst));
}

TEST(WatchedDevices, DeviceIsDueUntilItIsDoneAndAgainAfterItWasDisconnected)
{
    WatchedDevices devices;
    (void)devices.update({kFirst, kSecond});
    EXPECT_THAT(devices.due(), ElementsAre(kFirst, kSecond));
    devices.markDone(kFirst);
    (void)devices.update({kFirst, kSecond});
    EXPECT_THAT(devices.due(), ElementsAre(kSecond));
    (void)devices.update({});
    EXPECT_THAT(devices.due(), IsEmpty());
    (void)devices.update({kFirst});
    EXPECT_THAT(devices.due(), ElementsAre(kFirst));
}

TEST(WatchedDevices, AnotherNameOrDriverAtOneLocationIsAnotherDevice)
{
    WatchedDevices devices;
    (void)devices.update({kFirst});
    devices.markDone(kFirst);
    for (const WatchedDevice& other : {WatchedDevice{kFirst.driver, kFirst.location, "Device 3"},
                                       WatchedDevice{"other", kFirst.location, kFirst.name}}) {
        EXPECT_THAT(devices.update({other}).appeared, ElementsAre(other));
        EXPECT_THAT(devices.due(), ElementsAre(other));
        devices.markDone(other);
    }
}

TEST(WatchedDevices, DeviceThatFailsIsDueAgainUntilItsTriesAreUsedUp)
{
    WatchedDevices devices;
    (void)devices.update({kFirst});
    EXPECT_FALSE(devices.isLastTry(kFirst, 3));
    EXPECT_TRUE(devices.isLastTry(kFirst, 1));
    EXPECT_TRUE(devices.markFailed(kFirst, 3));
    EXPECT_FALSE(devices.isLastTry(kFirst, 3));
    EXPECT_TRUE(devices.markFailed(kFirst, 3));
    EXPECT_TRUE(devices.isLastTry(kFirst, 3));
    EXPECT_THAT(devices.due(), ElementsAre(kFirst));
    EXPECT_FALSE(devices.markFailed(kFirst, 3));
    EXPECT_THAT(devices.due(), IsEmpty());
}

TEST(WatchedDevices, DeviceIsDueAsSoonAsItIsReadable)
{
    WatchedDevices devices;
    auto device = kFirst;
    device.isReadable = false;
    EXPECT_THAT(devices.update({device}).appeared, ElementsAre(device));
    EXPECT_THAT(devices.due(), IsEmpty());
    EXPECT_THAT(devices.update({kFirst}).appeared, IsEmpty());
    EXPECT_THAT(devices.due(), ElementsAre(kFirst));
}

} // namespace
