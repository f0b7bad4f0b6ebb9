// SPDX-License-Identifier: MIT

#include "host/FakeDriver.h"
#include "host/cli/Commands.h"

#include <gmock/gmock.h>

#include <memory>

namespace {

using host::ExitStatus;
using testing::HasSubstr;

// Offers a live position, and counts how often it is started and stopped.
struct LiveDriver final : support::FakeDriver {
    bool gpsRunPVT(const Status&, const gps::Dictionary&) override { return ++started > 0; }
    bool gpsStopPVT() override { return ++stopped > 0; }

    int started = 0;
    int stopped = 0;
};

class InfoCommand : public testing::Test {
protected:
    InfoCommand()
    {
        plugIn_.name = "A Plug-in";
        plugIn_.plugInClass = "GPS";
        plugIn_.apiVersion = 1;
        plugIn_.info = {{"Vendor", "Us"}, {"Number", 7}};
        plugIn_.drivers = {driver_};
    }

    std::string run(bool asJson)
    {
        host::InfoOptions options;
        options.json = asJson;
        testing::internal::CaptureStdout();
        EXPECT_EQ(host::runInfo(plugIn_, options, host::Console{false}), ExitStatus::kSuccess);
        return testing::internal::GetCapturedStdout();
    }

    std::shared_ptr<LiveDriver> driver_ = std::make_shared<LiveDriver>();
    host::PlugInBundle plugIn_;
};

TEST_F(InfoCommand, TextHasTheFactsOfThePlugInAndOfEachDriver)
{
    driver_->types = {{"log", "upt"}};
    EXPECT_EQ(run(false), "Plug-in: A Plug-in\n"
                          "Class: GPS\n"
                          "API version: 1\n"
                          "Vendor: Us\n"
                          "Number: 7\n"
                          "\n"
                          "Driver: Fake\n"
                          "  Class: Fake:Fake\n"
                          "  Capabilities: tracks,waypoints,routes,geocaches,sendwpt\n"
                          "  Imports: log, upt\n"
                          "  Ready: yes\n"
                          "  Refreshes on changes of: volumes\n"
                          "  Live position: yes\n");
}

TEST_F(InfoCommand, DriverThatImportsNothingAndRefreshesForPorts)
{
    driver_->ready = false;
    driver_->serial = true;
    const auto text = run(false);
    EXPECT_THAT(text, HasSubstr("  Imports: none\n"));
    EXPECT_THAT(text, HasSubstr("  Ready: no\n"));
    EXPECT_THAT(text, HasSubstr("  Refreshes on changes of: serial ports\n"));
}

TEST_F(InfoCommand, DocumentHasTheSameFacts)
{
    EXPECT_EQ(run(true),
              R"({"name":"A Plug-in","class":"GPS","apiVersion":1,)"
              R"("info":{"Vendor":"Us","Number":"7"},"drivers":[{"class":"Fake:Fake",)"
              R"("name":"Fake","capabilities":"tracks,waypoints,routes,geocaches,sendwpt",)"
              R"("fileTypes":null,"ready":true,"needsSerialRefresh":false,)"
              R"("needsFileSystemRefresh":true,"needsUSBRefresh":false,"isPVTOffered":true}]})"
              "\n");
}

TEST_F(InfoCommand, LivePositionThatIsTriedIsStoppedAgain)
{
    (void)run(false);
    EXPECT_EQ(driver_->started, 1);
    EXPECT_EQ(driver_->stopped, 1);
}

} // namespace
