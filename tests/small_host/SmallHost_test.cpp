// SPDX-License-Identifier: MIT
// The plug-in as any host meets it: through the built bundle and sdk/ alone, by a host that throws,
// lets go of drivers early and passes null.

#include "small_host/SmallHost.h"

#include "support/ActingReceiver.h"
#include "support/BundleCopy.h"
#include "support/Language.h"
#include "support/ReceiverFolder.h"
#include "support/RecordingReceiver.h"
#include "support/TestPorts.h"

#include <gps/DictionaryHelpers.h>
#include <gps/GPSFileDevice.h>
#include <gps/GPSPoint.h>
#include <gps/GPSSessionControl.h>
#include <gps/GPSTransferAccount.h>
#include <gps/View.h>
#include <platform/System/StringTable.h>
#include <tools/simulator/Receiver.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <future>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <syslog.h>

namespace {

std::atomic<int> openlogCalls = 0;

} // namespace

/// Replaces the C library's in the whole process.
extern "C" __attribute__((visibility("default"))) void openlog(const char* /*identity*/,
                                                               int /*options*/, int /*facility*/)
{
    ++openlogCalls;
}

namespace {

using support::ActingReceiver;
using support::RecordingReceiver;
using support::sentence;
using support::SmallHost;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

const std::string kWaypoint = sentence("PMGNWPL,4600.000,N,00730.000,E,0000500,M,CAMP,,j");
const std::string kTrackPoint =
    sentence("PMGNTRK,4600.000,N,00730.000,E,00500,M,120000,A,T,290208");

/// A host with one mounted receiver.
class SmallHostTest : public testing::Test {
protected:
    SmallHostTest()
    {
        receiver_.unitFile("42");
        receiver_.languageFile({"MyPOIs=P", "Geocaches=G", "Routes=R", "TrackLogs=T"});
        receiver_.put("P/p.upt", {kWaypoint});
        receiver_.put("T/t.log", {kTrackPoint});
    }

    /// The calls of a whole download.
    std::vector<std::string> acquire(const SmallHost::Driver& driver) const
    {
        const auto status = std::make_shared<RecordingReceiver>();
        EXPECT_EQ(driver->gpsRunAcquire(status, {}), std::nullopt);
        EXPECT_TRUE(status->waitUntilIdle());
        return status->calls();
    }

    support::ReceiverFolder receiver_;
    support::TestFolders folders_{{receiver_.path()}};
    SmallHost host_;
};

TEST_F(SmallHostTest, BundleIsFoundByARelativePathAfterTheDirectoryHasChanged)
{
    const auto before = std::filesystem::current_path();
    const support::BundleCopy copy;
    std::filesystem::current_path(copy.folder());
    const SmallHost host{"MagellanGPSPlugin.bundle"};
    std::filesystem::current_path("/");
    const auto drivers = host.drivers();
    std::filesystem::current_path(before);
    ASSERT_THAT(drivers, Not(IsEmpty()));
    EXPECT_THAT(acquire(drivers.front()), Contains(HasSubstr("symbol = \"Campground\"")));
}

TEST_F(SmallHostTest, StatusObjectThatThrowsOnAWorkerEndsTheDownloadWithItsLastReport)
{
    const auto driver = host_.driver();
    const auto whole = acquire(driver);
    for (const auto& call : {"gpsStateChange 1", "startTransfer 3", "wayPoint", "trackPoint",
                             "endTransfer 1", "gpsStateChange 0"}) {
        const auto status = std::make_shared<ActingReceiver>(call, [] { throw 42; });
        ASSERT_EQ(driver->gpsRunAcquire(status, {}), std::nullopt) << call;
        ASSERT_TRUE(status->waitUntilIdle()) << call;
        EXPECT_EQ(status->calls().back(), "gpsStateChange 0") << call;
        EXPECT_EQ(acquire(driver), whole) << "the next download after " << call;
    }
}

TEST_F(SmallHostTest, WhatAStatusObjectThrowsInAnImportReachesTheHostAfterTheLastReport)
{
    const auto driver = host_.driver();
    const auto file = receiver_.path("T/t.log");
    for (const auto& call : {"startTransfer 1", "newTrack", "trackPoint", "endTransfer 1"}) {
        const auto status =
            std::make_shared<ActingReceiver>(call, [] { throw std::runtime_error{"the host's"}; });
        EXPECT_THROW((void)driver->gpsRunAcquire(status, {{"sourcePath", file}}),
                     std::runtime_error)
            << call;
        EXPECT_EQ(status->calls().back(), "gpsStateChange 0") << call;
    }
}

TEST_F(SmallHostTest, LastReferenceToADriverMayBeDroppedInACallOfItsImport)
{
    auto driver = host_.driver();
    const std::weak_ptr<gps::GPSPlugInProtocol> alive = driver;
    const auto status =
        std::make_shared<ActingReceiver>("startTransfer", [&driver] { driver.reset(); });
    auto* const called = driver.get();
    EXPECT_EQ(called->gpsRunAcquire(status, {{"sourcePath", receiver_.path("T/t.log")}}),
              std::nullopt);
    EXPECT_THAT(status->calls(),
                ElementsAre("startTransfer 1", StartsWith("newTrack"), StartsWith("trackPoint"),
                            "endTransfer 1", "gpsStateChange 0"));
    EXPECT_TRUE(alive.expired());
}

TEST_F(SmallHostTest, LastReferenceToADriverMayBeDroppedInACallOfItsDownload)
{
    auto driver = host_.driver();
    const auto whole = acquire(driver);
    std::promise<void> started;
    const auto status = std::make_shared<ActingReceiver>("gpsStateChange 1", [&] {
        started.get_future().wait(); // until gpsRunAcquire() has returned
        driver.reset();
    });
    ASSERT_EQ(driver->gpsRunAcquire(status, {}), std::nullopt);
    started.set_value();
    ASSERT_TRUE(status->waitUntilIdle());
    EXPECT_EQ(status->calls(), whole);
}

/// Counts waypoints instead of storing them.
class CountingReceiver : public RecordingReceiver {
public:
    void wayPoint(const gps::GPSPoint& /*point*/, const gps::Dictionary& /*extra*/) override
    {
        ++count_;
    }
    [[nodiscard]] std::size_t count() const { return count_; }

private:
    std::size_t count_ = 0;
};

TEST_F(SmallHostTest, RouteMayMentionALongWaypointAsOftenAsItLikes)
{
    constexpr std::size_t kMentions = 2000; // copies of the waypoint would take 2 GB
    std::string route = "PMGNRTE,1,1,c,1,R";
    for (std::size_t i = 0; i < kMentions; ++i)
        route += ",A,a";
    const auto file = receiver_.put(
        "r.rte", {sentence("PMGNRTE,1,1,c,2,FIRST"), // an import expects a route first
                  sentence("PMGNWPL,4600.0,N,00700.0,E,0,M,A," + std::string(1 << 20, 'x') + ",a"),
                  sentence(route)});
    const auto status = std::make_shared<CountingReceiver>();
    EXPECT_EQ(host_.driver()->gpsRunAcquire(status, {{"sourcePath", file}}), std::nullopt);
    EXPECT_EQ(status->count(), kMentions);
}

TEST_F(SmallHostTest, ExportedHelpersDoNothingWithoutADictionary)
{
    const std::int32_t number = 1;
    const char* const texts[] = {"a"};
    const std::string strings[] = {"a"};
    host_.exported<decltype(&SetFloatInDictionary)>("SetFloatInDictionary")(nullptr, "k", 1);
    host_.exported<decltype(&SetIntInDictionary)>("SetIntInDictionary")(nullptr, "k", 1);
    host_.exported<decltype(&SetNumberInDictionary)>("SetNumberInDictionary")(
        nullptr, "k", gps::NumberType::kInt32, &number);
    for (const char* const name :
         {"SetCStringInDictionary", "SetCStringInDictionaryIfNotEmpty",
          "SetLatin1CStringInDictionary", "SetLatin1CStringInDictionaryIfNotEmpty"})
        host_.exported<decltype(&SetCStringInDictionary)>(name)(nullptr, "k", "text");
    host_.exported<decltype(&SetStringInDictionaryFromCStringList)>(
        "SetStringInDictionaryFromCStringList")(nullptr, "k", texts, 0, 0);
    host_.exported<decltype(&SetStringInDictionaryFromCFStringList)>(
        "SetStringInDictionaryFromCFStringList")(nullptr, "k", strings, 0, 0);
    host_.exported<decltype(&SetGPSPointInDictionary)>("SetGPSPointInDictionary")(nullptr, "k", {});
    host_.exported<decltype(&SetDebugLevelFromDictionary)>("SetDebugLevelFromDictionary")(nullptr);
    EXPECT_EQ(host_.exported<decltype(&GetIntValueForKey)>("GetIntValueForKey")(nullptr, "k", 7),
              7);
    EXPECT_TRUE(
        host_.exported<decltype(&GetBoolValueForKey)>("GetBoolValueForKey")(nullptr, "k", true));
}

TEST_F(SmallHostTest, ExportedHelpersTakeAKeyThatIsPartOfTheDictionary)
{
    gps::Dictionary dictionary{{"key", "key"}};
    host_.exported<decltype(&SetCStringInDictionary)>("SetCStringInDictionary")(
        &dictionary, dictionary.findString("key")->c_str(), "text");
    EXPECT_EQ(gps::describe(dictionary), "{key = \"text\"}");
    dictionary.set("key", "key");
    host_.exported<decltype(&SetIntInDictionary)>("SetIntInDictionary")(
        &dictionary, dictionary.findString("key")->c_str(), 7);
    EXPECT_EQ(gps::describe(dictionary), "{key = 7}");
}

TEST_F(SmallHostTest, NullNamesAreAnswered)
{
    EXPECT_EQ(host_.exported<gps::PrincipalClassEntry>(gps::kPrincipalClassEntry)(nullptr),
              nullptr);
    EXPECT_EQ(host_.exported<decltype(&GetGMTOffsetFromTimeZoneName)>(
                  "GetGMTOffsetFromTimeZoneName")(nullptr),
              0);
    EXPECT_EQ(host_.exported<decltype(&GetGMTOffsetFromTimeZoneNameWithUnixTime)>(
                  "GetGMTOffsetFromTimeZoneNameWithUnixTime")(nullptr, 0),
              0);
}

TEST_F(SmallHostTest, OnlyTheDriverOfMountedReceiversIsAFileDevice)
{
    const support::TestPorts ports{{"/dev/null"}};
    const auto drivers = host_.drivers();
    ASSERT_THAT(drivers, SizeIs(2));
    EXPECT_NE(dynamic_cast<gps::GPSFileDevice*>(drivers.front().get()), nullptr);
    EXPECT_EQ(dynamic_cast<gps::GPSFileDevice*>(drivers.back().get()), nullptr);
    for (const auto& driver : drivers) {
        EXPECT_NE(dynamic_cast<gps::GPSTransferAccount*>(driver.get()), nullptr);
        EXPECT_NE(dynamic_cast<gps::GPSSessionControl*>(driver.get()), nullptr);
    }
}

TEST_F(SmallHostTest, SecondOfTwoEqualDevicesCanBeSelected)
{
    support::TestFolders::set({receiver_.path(), receiver_.path()});
    const auto driver = host_.driver();
    ASSERT_THAT(driver->deviceList(), SizeIs(2));
    auto* const menu = driver->gpsView()->find<gps::PopUpButton>("deviceListMenu");
    menu->pick(1);
    EXPECT_EQ(menu->selected(), 1U);
    EXPECT_THAT(acquire(driver), Contains(StartsWith("trackPoint")));
}

/// A host with a simulated receiver on a serial port.
class SerialSmallHost : public testing::Test {
protected:
    /// The serial driver with the receiver's port selected.
    [[nodiscard]] SmallHost::Driver driver() const
    {
        auto driver = host_.driver("Magellan Serial");
        const gps::Value port{receiver_.path()};
        const auto devices = driver->deviceList();
        const auto found =
            std::find_if(devices.begin(), devices.end(), [&](const gps::Value& device) {
                return *device.as<gps::Dictionary>()->find("location") == port;
            });
        driver->gpsView()
            ->find<gps::PopUpButton>("deviceListMenu")
            ->pick(static_cast<std::size_t>(found - devices.begin()));
        return driver;
    }

    /// Waits until the receiver has got a command.
    [[nodiscard]] bool receives(const std::string& command) const
    {
        return receiver_.waitFor([&](const simulator::LogEntry& entry) {
            return entry.kind == simulator::LogKind::kReceived && entry.text == command;
        });
    }

    simulator::Receiver receiver_{
        {.paced = false,
         .chatter = true, // otherwise the session waits for a second after some commands
         .sentences = {.waypoints = {"PMGNWPL,4600.0,N,00700.0,E,0,M,CAMP,,a",
                                     "PMGNWPL,4600.0,N,00700.0,E,0,M,HUT,,a"}}}};
    support::TestFolders folders_{{}};
    support::TestPorts ports_{{receiver_.path()}};
    SmallHost host_;
    gps::Dictionary options_{{"waypoints", true}};
};

TEST_F(SerialSmallHost, StatusObjectThatThrowsLeavesTheReceiverAsItWasFound)
{
    const auto status = std::make_shared<ActingReceiver>("wayPoint", [] { throw 42; });
    ASSERT_EQ(driver()->gpsRunAcquire(status, options_), std::nullopt);
    ASSERT_TRUE(status->waitUntilIdle());
    EXPECT_THAT(status->calls(), ElementsAre("gpsStateChange 1", "startTransfer 3",
                                             HasSubstr("CAMP"), "gpsStateChange 0"));
    EXPECT_TRUE(receives("PMGNCMD,TOFF"));
    EXPECT_TRUE(receives("PMGNCMD,HANDOFF"));
    EXPECT_TRUE(receives("PMGNCMD,BAUD,4800"));
}

TEST_F(SerialSmallHost, LastReferenceToTheDriverMayBeDroppedInACall)
{
    auto dropped = driver();
    std::promise<void> started;
    const auto status = std::make_shared<ActingReceiver>("wayPoint", [&] {
        if (dropped != nullptr)
            started.get_future().wait(); // until gpsRunAcquire() has returned
        dropped.reset();
    });
    ASSERT_EQ(dropped->gpsRunAcquire(status, options_), std::nullopt);
    started.set_value();
    ASSERT_TRUE(status->waitUntilIdle());
    EXPECT_THAT(status->calls(),
                ElementsAre("gpsStateChange 1", "startTransfer 3", HasSubstr("CAMP"),
                            HasSubstr("HUT"), "endTransfer 3", "gpsStateChange 0"));
    EXPECT_TRUE(receives("PMGNCMD,BAUD,4800"));
}

TEST_F(SmallHostTest, AccountNamesWhatNoCallReports)
{
    const auto missing = receiver_.path("P/p.upt");
    receiver_.put("P/p.upt", {"\xFF"});
    const auto driver = host_.driver();
    EXPECT_THAT(acquire(driver), Not(Contains(StartsWith("error"))));
    const auto account = dynamic_cast<gps::GPSTransferAccount&>(*driver).transferAccount();
    ASSERT_THAT(account.files, SizeIs(1));
    EXPECT_EQ(account.files.front().path, missing);
    EXPECT_TRUE(account.files.front().error);
}

TEST_F(SmallHostTest, HostKeepsItsIdentityInTheSystemLog)
{
    ASSERT_EQ(::dlsym(RTLD_DEFAULT, "openlog"), reinterpret_cast<void*>(&::openlog))
        << "calls of the plug-in are not seen";
    support::TestFolders::set({});
    const auto status = std::make_shared<RecordingReceiver>();
    EXPECT_TRUE(host_.driver()->gpsRunAcquire(status, {{"debug", 1}})); // which is logged
    EXPECT_EQ(openlogCalls, 0);
}

TEST_F(SmallHostTest, GermanUserGetsGermanTexts)
{
    support::TestFolders::set({});
    const support::Language german{nullptr, nullptr, "de_DE.UTF-8"};
    const auto error =
        host_.driver()->gpsRunAcquire(std::make_shared<RecordingReceiver>(), {}).value();
    EXPECT_EQ(error.description(), "Es ist kein Magellan-Gerät ausgewählt");
    EXPECT_THAT(error.suggestion().value_or(""), EndsWith("versuchen Sie es noch einmal"));
}

std::size_t placeholdersIn(const std::string& text)
{
    std::size_t count = 0;
    for (auto at = text.find("%@"); at != std::string::npos; at = text.find("%@", at + 1))
        ++count;
    return count;
}

TEST(StringTables, EveryEnglishTextHasAGermanOneWithTheSamePlaceholders)
{
    const support::BundleCopy bundle;
    const auto english = gps::parseStringTable(bundle.read("en.lproj/Localizable.strings"));
    const auto german = gps::parseStringTable(bundle.read("de.lproj/Localizable.strings"));
    EXPECT_THAT(english, Not(IsEmpty()));
    EXPECT_EQ(german.size(), english.size());
    for (const auto& [key, value] : english) {
        const auto* const text = german.findString(key);
        ASSERT_NE(text, nullptr) << key;
        EXPECT_NE(*text, key);
        EXPECT_THAT(*text, Not(IsEmpty()));
        EXPECT_EQ(placeholdersIn(*text), placeholdersIn(key)) << key;
    }
}

} // namespace
