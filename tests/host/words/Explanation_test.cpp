// SPDX-License-Identifier: MIT
// What `devices --explain` prints for searches of a fake driver.

#include "host/words/Explanation.h"

#include "host/FakeDriver.h"
#include "support/AsNobody.h"
#include "support/TemporaryFolder.h"

#include <gps/GPSDeviceSearch.h>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <memory>

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using Verdict = gps::SearchedLocation::Verdict;

struct Searching final : support::FakeDriver, gps::GPSDeviceSearch {
    using FakeDriver::FakeDriver;
    std::vector<gps::SearchedLocation> searchedLocations() const override { return locations; }

    std::vector<gps::SearchedLocation> locations;
};

class Explanation : public testing::Test {
protected:
    Explanation() { plugIn_.drivers = {driver_}; }

    std::shared_ptr<Searching> driver_ = std::make_shared<Searching>("My Driver");
    host::PlugInBundle plugIn_;
};

TEST_F(Explanation, DevicesComeFirstAndSkippedLocationsLastOnOneLinePerReason)
{
    driver_->locations = {{"/proc", "pseudo volume", Verdict::kSkipped, "Never", ""},
                          {"/a", "stick", Verdict::kRejected, "Empty", "Fill it"},
                          {"/home", "disk", Verdict::kSkipped, "Never", ""},
                          {"/sys", "pseudo volume", Verdict::kSkipped, "Never", ""},
                          {"/b", "stick", Verdict::kAccepted, "Good", ""}};
    EXPECT_THAT(host::explanationOf(plugIn_),
                StartsWith("my-driver:\n"
                           "  /b (stick), accepted: Good.\n"
                           "  /a (stick), rejected: Empty. Fill it.\n"
                           "  /proc, /sys (pseudo volume), skipped: Never.\n"
                           "  /home (disk), skipped: Never.\n"
                           "No serial port was found."));
}

TEST_F(Explanation, DocumentKeepsTheOrderOfTheSearch)
{
    driver_->locations = {{"/a", "stick", Verdict::kRejected, "Empty", "Fill it"},
                          {"/b", "stick", Verdict::kAccepted, "Good", ""},
                          {"/c", "disk", Verdict::kSkipped, "Never", ""}};
    EXPECT_EQ(
        host::searchedLocationsJson(*driver_).dump(),
        R"([{"location":"/a","sort":"stick","verdict":"not taken","reason":"Empty","advice":"Fill it"},)"
        R"({"location":"/b","sort":"stick","verdict":"taken","reason":"Good","advice":null},)"
        R"({"location":"/c","sort":"disk","verdict":"passed over","reason":"Never","advice":null}])");
}

TEST_F(Explanation, DriverThatReportsNoSearchHasNothingAndNull)
{
    const auto silent = std::make_shared<support::FakeDriver>("Silent");
    plugIn_.drivers = {silent};
    EXPECT_THAT(host::explanationOf(plugIn_),
                StartsWith("silent:\n  Nothing to examine was found.\n"));
    EXPECT_TRUE(host::searchedLocationsJson(*silent).is_null());
}

TEST_F(Explanation, PortThatMayNotBeOpenedHasAdvice)
{
    const support::TemporaryFolder folder;
    const auto port = folder.put("ttyUSB0", "");
    std::filesystem::permissions(port, std::filesystem::perms::none);
    driver_->serial = true;
    driver_->locations = {{port, "serial port", Verdict::kAccepted, "Good", ""}};
    {
        const support::AsNobody nobody;
        EXPECT_THAT(host::explanationOf(plugIn_),
                    HasSubstr("accepted: Good. You do not have permission to use the port."));
    }
    std::filesystem::permissions(port, std::filesystem::perms::owner_all);
    EXPECT_THAT(host::explanationOf(plugIn_),
                testing::EndsWith(
                    "accepted: Good.\n\nTo use a folder that holds a copy of a receiver's files, "
                    "name it with --test-folder.\n"));
}

TEST_F(Explanation, ControlCharactersInALocationAreNotPrinted)
{
    driver_->locations = {{"/a\x1b[2J\nb", "stick", Verdict::kAccepted, "Good", ""}};
    EXPECT_THAT(host::explanationOf(plugIn_), Not(HasSubstr("\x1b")));
    EXPECT_THAT(host::explanationOf(plugIn_), Not(HasSubstr("\nb")));
}

} // namespace
