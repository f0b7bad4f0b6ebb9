// SPDX-License-Identifier: MIT

#include "host/window/devices/ReceiverState.h"

#include "host/FakeDriver.h"

#include <gmock/gmock.h>

namespace {

using host::ControlState;
using Kind = host::ControlState::Kind;

TEST(ReceiverState, HasDevicesInTheDriversOrderWithTheSelectedOne)
{
    support::FakeDriver driver{"Fake Driver"};
    driver.setLocations({"/a", "/b"});
    const auto state = host::stateOf(driver);
    EXPECT_EQ(state.title, "Fake Driver");
    EXPECT_EQ(state.name, "fake-driver");
    ASSERT_EQ(state.devices.size(), 2U);
    EXPECT_TRUE(state.devices[0].isSelected);
    EXPECT_EQ(state.devices[1].location, "/b");
}

TEST(ReceiverState, HasTheControlsThatTheViewShows)
{
    support::FakeDriver driver;
    driver.setLocations({"/a", "/b"});
    driver.view->addSubview(std::make_shared<gps::Button>("deviceButton", "Allow Access"));
    EXPECT_THAT(
        host::stateOf(driver).controls,
        testing::ElementsAre(
            ControlState{
                Kind::kMenu, driver.menu->identifier(), driver.menu->title(), {"/a", "/b"}, 0},
            ControlState{Kind::kButton, "deviceButton", "Allow Access"}));
}

TEST(ReceiverState, LeavesOutHiddenControlsAndAllThatIsInAHiddenGroup)
{
    support::FakeDriver driver;
    driver.menu->setHidden(true);
    EXPECT_THAT(host::stateOf(driver).controls, testing::IsEmpty());
    driver.menu->setHidden(false);
    EXPECT_THAT(host::stateOf(driver).controls, testing::SizeIs(1));
    driver.view->setHidden(true);
    EXPECT_THAT(host::stateOf(driver).controls, testing::IsEmpty());
}

} // namespace
