// SPDX-License-Identifier: MIT
// Watching needs real changes of volumes and ports: tests/system_udev.

#include "host/FakeDriver.h"
#include "host/cli/Commands.h"

#include <gps/GPSDeviceDescription.h>

#include <gmock/gmock.h>

#include <memory>

namespace {

using host::ExitStatus;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class DevicesCommand : public testing::Test {
protected:
    DevicesCommand() { plugIn_.drivers = {driver_}; }

    std::string run()
    {
        testing::internal::CaptureStdout();
        EXPECT_EQ(host::runDevices(plugIn_, options_, host::Console{false}), ExitStatus::kSuccess);
        return testing::internal::GetCapturedStdout();
    }

    std::shared_ptr<support::FakeDriver> driver_ =
        std::make_shared<support::FakeDriver>("My Driver");
    host::PlugInBundle plugIn_;
    host::DevicesOptions options_;
};

TEST_F(DevicesCommand, TableMarksTheSelectedDevice)
{
    driver_->setLocations({"/a", "/b"});
    driver_->menu->select(1);
    EXPECT_EQ(run(), "   Driver     Device        Authorized  Location\n"
                     "   my-driver  Device at /a  yes         /a\n"
                     "*  my-driver  Device at /b  yes         /b\n");
}

/// A driver whose first device says which one it is.
struct DescribingDriver : support::FakeDriver, gps::GPSDeviceDescription {
    gps::DeviceDescription deviceDescription(const std::string& location) const override
    {
        return location == "/a" ? gps::DeviceDescription{{"Model \x1b"}, {"1.2"}}
                                : gps::DeviceDescription{};
    }
};

TEST_F(DevicesCommand, ModelAndFirmwareAreShownIfADeviceHasThem)
{
    const auto driver = std::make_shared<DescribingDriver>();
    driver->setLocations({"/a", "/b"});
    plugIn_.drivers = {driver};
    EXPECT_EQ(run(), "   Driver  Device        Model    Firmware  Authorized  Location\n"
                     "*  fake    Device at /a  Model \uFFFD  1.2       yes         /a\n"
                     "   fake    Device at /b                     yes         /b\n");
    options_.json = true;
    EXPECT_THAT(run(),
                AllOf(HasSubstr(R"("selected":true,"model":"Model \u001b","firmware":"1.2"})"),
                      HasSubstr(R"("selected":false,"model":null,"firmware":null})")));
}

TEST_F(DevicesCommand, LocationIsNotShortenedSinceUsersCopyIt)
{
    const std::string far = '/' + std::string(200, 'x');
    driver_->setLocations({far});
    EXPECT_THAT(run(), EndsWith("  " + far + '\n'));
}

TEST_F(DevicesCommand, AuthorizationIsBlankIfTheDriverDoesNotReportIt)
{
    driver_->devices = {gps::Dictionary{{"location", "/a"}, {"authorized", false}},
                        gps::Dictionary{{"location", "/b"}}};
    EXPECT_THAT(run(), EndsWith("  my-driver          no          /a\n"
                                "  my-driver                      /b\n"));
}

TEST_F(DevicesCommand, WithoutADeviceThereIsASentenceInsteadOfATable)
{
    EXPECT_EQ(run(), "No mounted receiver and no serial port was found.\n");
    options_.explain = true;
    EXPECT_THAT(run(), StartsWith("No mounted receiver and no serial port was found.\n\n"
                                  "my-driver:\n"));
}

TEST_F(DevicesCommand, DocumentHasTheViewBesideTheDevices)
{
    driver_->setLocations({"/a"});
    options_.json = true;
    EXPECT_EQ(run(), R"({"drivers":[{"class":"Fake:My Driver","name":"My Driver","ready":true,)"
                     R"("view":{"deviceListMenu":{"hidden":false,"items":["/a"],"selected":0},)"
                     R"("deviceButton":{"hidden":true}},"devices":[{"location":"/a",)"
                     R"("name":"Device at /a","authorized":true,"selected":true,"model":null,)"
                     R"("firmware":null}]}]})"
                     "\n");
}

TEST_F(DevicesCommand, DocumentHasNullForWhatADriverDoesNotReport)
{
    driver_->view = nullptr;
    driver_->devices = {gps::Dictionary{{"location", "/a"}}};
    options_.json = true;
    options_.explain = true;
    const auto text = run();
    EXPECT_THAT(text, HasSubstr(R"("items":[],"selected":null)"));
    EXPECT_THAT(text, HasSubstr(R"("name":null,"authorized":null,"selected":false)"));
    EXPECT_THAT(text, HasSubstr(R"("searched":null)"));
}

} // namespace
