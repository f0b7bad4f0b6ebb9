// SPDX-License-Identifier: MIT

#include "host/watching/Presence.h"

#include <gmock/gmock.h>

namespace {

using host::Presence;
using host::PresentDevice;
using testing::ElementsAre;
using testing::IsEmpty;

const PresentDevice kFirst{"magellan", "/media/A", "Device 1"};
const PresentDevice kSecond{"magellan", "/media/B", "Device 2"};

TEST(Presence, TellsWhatHasComeAndWhatHasGone)
{
    Presence presence;
    EXPECT_THAT(presence.update({kFirst}).appeared, ElementsAre(kFirst));
    EXPECT_THAT(presence.update({kFirst}).appeared, IsEmpty());
    const auto changes = presence.update({kSecond});
    EXPECT_THAT(changes.appeared, ElementsAre(kSecond));
    EXPECT_THAT(changes.gone, ElementsAre(kFirst));
}

TEST(Presence, DeviceThatIsListedTwiceCountsOnce)
{
    Presence presence;
    EXPECT_THAT(presence.update({kFirst, kSecond, kFirst}).appeared, ElementsAre(kFirst, kSecond));
    EXPECT_THAT(presence.due(), ElementsAre(kFirst, kSecond));
    EXPECT_THAT(presence.update({kSecond}).gone, ElementsAre(kFirst));
}

TEST(Presence, DeviceIsDueUntilItIsDoneAndAgainAfterItWasAway)
{
    Presence presence;
    (void)presence.update({kFirst, kSecond});
    EXPECT_THAT(presence.due(), ElementsAre(kFirst, kSecond));
    presence.done(kFirst);
    (void)presence.update({kFirst, kSecond});
    EXPECT_THAT(presence.due(), ElementsAre(kSecond));
    (void)presence.update({});
    EXPECT_THAT(presence.due(), IsEmpty());
    (void)presence.update({kFirst});
    EXPECT_THAT(presence.due(), ElementsAre(kFirst));
}

TEST(Presence, AnotherNameOrDriverAtOnePlaceIsAnotherDevice)
{
    Presence presence;
    (void)presence.update({kFirst});
    presence.done(kFirst);
    for (const PresentDevice& other : {PresentDevice{kFirst.driver, kFirst.location, "Device 3"},
                                       PresentDevice{"other", kFirst.location, kFirst.name}}) {
        EXPECT_THAT(presence.update({other}).appeared, ElementsAre(other));
        EXPECT_THAT(presence.due(), ElementsAre(other));
        presence.done(other);
    }
}

TEST(Presence, DeviceThatFailsIsDueAgainUntilItsTriesAreUsedUp)
{
    Presence presence;
    (void)presence.update({kFirst});
    EXPECT_TRUE(presence.failed(kFirst, 3));
    EXPECT_TRUE(presence.failed(kFirst, 3));
    EXPECT_THAT(presence.due(), ElementsAre(kFirst));
    EXPECT_FALSE(presence.failed(kFirst, 3));
    EXPECT_THAT(presence.due(), IsEmpty());
}

TEST(Presence, DeviceThatMayNotBeReadIsDueOnceItMay)
{
    Presence presence;
    auto device = kFirst;
    device.isReadable = false;
    EXPECT_THAT(presence.update({device}).appeared, ElementsAre(device));
    EXPECT_THAT(presence.due(), IsEmpty());
    EXPECT_THAT(presence.update({kFirst}).appeared, IsEmpty());
    EXPECT_THAT(presence.due(), ElementsAre(kFirst));
}

} // namespace
