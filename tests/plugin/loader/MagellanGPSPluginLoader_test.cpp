// SPDX-License-Identifier: MIT
// What the loader reports, and the drivers that it creates.

#include <gps/GPSPlugInProtocol.h>
#include <gps/GPSPoint.h>
#include <gps/VeloranPlugIn.h>
#include <gps/View.h>
#include <platform/System/StringTable.h>
#include <plugin/loader/MagellanGPSPluginLoader.h>
#include <support/BundleCopy.h>
#include <support/LogCapture.h>
#include <support/ReceiverFolder.h>
#include <support/RecordingReceiver.h>
#include <support/TestPorts.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace magellan {
namespace {

using support::BundleCopy;
using support::sentence;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Optional;
using testing::StartsWith;

TEST(MagellanGPSPluginLoader, ReportsTheBundlesIdentity)
{
    MagellanGPSPluginLoader loader;
    EXPECT_TRUE(loader.piInitialize());
    EXPECT_EQ(loader.piName(), "Magellan GPS PlugIns");
    EXPECT_EQ(loader.piClass(), "GPSPlugIn");
    EXPECT_EQ(loader.piAPIVersion(), 1);
    loader.piTerminate();
    EXPECT_TRUE(loader.piInitialize());
}

TEST(MagellanGPSPluginLoader, ItsInformationHasExactlySixEntries)
{
    MagellanGPSPluginLoader loader;
    EXPECT_EQ(loader.piInfo(),
              (gps::Dictionary{
                  {"Copyright", "\xC2\xA9 2026 Orvane"},
                  {"Description", "Used to read GPS information from Magellan GPS receivers."},
                  {"FeedbackURL", "https://www.orvane.example/support"},
                  {"VersionCheck",
                   "https://www.orvane.example/versioncheck.php?package=MagellanGPSPlugin"},
                  {"Version", "1.5"},
                  {"GPSPlugIn:Manufacturer", "Magellan"}}));
}

TEST(MagellanGPSPluginLoader, HasNoDriversForAnyOtherClass)
{
    const support::TestFolders none{{}};
    MagellanGPSPluginLoader loader;
    for (const auto* other :
         {"", "gpsplugin", "GPSPLUGIN", "GPSPlugin", "GPSPlugIn ", "VeloranPlugIn"})
        EXPECT_FALSE(loader.piGetPlugInsForClass(other)) << other;
}

TEST(MagellanGPSPluginLoader, CreatesNewDriversAtEachCall)
{
    const support::TestFolders none{{}};
    MagellanGPSPluginLoader loader;
    EXPECT_NE(loader.piGetPlugInsForClass("GPSPlugIn")->nextObject(),
              loader.piGetPlugInsForClass("GPSPlugIn")->nextObject());
}

TEST(MagellanGPSPluginLoader, NeitherOfItsDriversNeedsAUsbRefreshForAnyVendorAndProduct)
{
    const support::TestFolders none{{}};
    const support::TestPorts ports{{"/dev/one"}};
    MagellanGPSPluginLoader loader;
    auto drivers = loader.piGetPlugInsForClass("GPSPlugIn");
    ASSERT_TRUE(drivers);
    std::vector<std::string> names;
    while (const auto driver = drivers->nextObject()) {
        names.push_back(driver->className());
        for (const std::int32_t id : {std::numeric_limits<std::int32_t>::min(), 0, 1,
                                      std::numeric_limits<std::int32_t>::max()}) {
            std::int32_t vendor = id;
            std::int32_t product = id;
            EXPECT_FALSE(driver->needsUSBRefreshOnVendor(&vendor, &product)) << names.back();
            EXPECT_EQ(vendor, id) << names.back();
            EXPECT_EQ(product, id) << names.back();
        }
        EXPECT_FALSE(driver->needsUSBRefreshOnVendor(nullptr, nullptr)) << names.back();
    }
    EXPECT_THAT(names, ElementsAre("MagellanGPSPlugin", "MagellanSerialGPSPlugin"));
}

TEST(MissingResources, AViewWithoutPopUpAndButtonIsAccepted)
{
    support::ReceiverFolder receiver;
    receiver.unitFile("1");
    const support::TestFolders folders{{receiver.path()}};
    const BundleCopy bundle;
    bundle.put("MagellanGPS.plist",
               "<plist "
               "version=\"1.0\"><dict><key>class</key><string>View</string><key>identifier</"
               "key><string>gpsView</string></dict></plist>");
    auto drivers = bundle.load().piGetPlugInsForClass("GPSPlugIn");
    ASSERT_TRUE(drivers);
    EXPECT_TRUE(drivers->nextObject()->refreshDeviceList());
}

/// The first driver of a copy of the bundle.
std::shared_ptr<gps::GPSPlugInProtocol> driverOf(const BundleCopy& bundle)
{
    auto drivers = bundle.load().piGetPlugInsForClass("GPSPlugIn");
    return drivers ? drivers->nextObject() : nullptr;
}

/// The symbol of an imported waypoint with this icon.
std::string symbolOf(gps::GPSPlugInProtocol& driver, const std::string& icon)
{
    const support::ReceiverFolder receiver;
    const auto status = std::make_shared<support::RecordingReceiver>();
    const auto file =
        receiver.put("p.upt", {sentence("PMGNWPL,4600.000,N,00730.000,E,0000500,M,A,," + icon)});
    EXPECT_EQ(driver.gpsRunAcquire(status, {{"sourcePath", file}}), std::nullopt);
    const auto call = status->calls().at(1);
    const auto begin = call.find("symbol = \"") + 10;
    return call.substr(begin, call.find('"', begin) - begin);
}
std::string symbolOf(const BundleCopy& bundle, const std::string& icon)
{
    return symbolOf(*driverOf(bundle), icon);
}

/// Changes the working directory during its lifetime.
class WorkingDirectory {
public:
    explicit WorkingDirectory(const std::string& folder) { std::filesystem::current_path(folder); }
    ~WorkingDirectory() { std::filesystem::current_path(previous_); }
    WorkingDirectory(const WorkingDirectory&) = delete;
    WorkingDirectory& operator=(const WorkingDirectory&) = delete;

private:
    std::filesystem::path previous_ = std::filesystem::current_path();
};

/// Loads the module of a bundle by a relative path. The path has the name of the bundle's own
/// folder, because the loader returns a module that it has already loaded by an equal path.
void* openRelative(const BundleCopy& bundle)
{
    const std::filesystem::path folder{bundle.folder()};
    const WorkingDirectory above{folder.parent_path()};
    return BundleCopy::open(folder.filename());
}

TEST(RelativePath, AHostMayChangeItsDirectoryAfterItHasTheLoader)
{
    const support::TestFolders none{{}};
    const BundleCopy bundle;
    void* const module = openRelative(bundle);
    gps::VeloranPlugIn* loader = nullptr;
    {
        const WorkingDirectory above{std::filesystem::path{bundle.folder()}.parent_path()};
        loader = &BundleCopy::loaderIn(module);
    }
    EXPECT_TRUE(loader->piGetPlugInsForClass("GPSPlugIn"));
}

TEST(RelativePath, ABundleThatCouldNotBeFoundIsFoundLaterWithAllItsTables)
{
    const support::TestFolders none{{}};
    const BundleCopy bundle;
    auto& loader = BundleCopy::loaderIn(openRelative(bundle));
    EXPECT_FALSE(loader.piGetPlugInsForClass("GPSPlugIn"));
    const WorkingDirectory above{std::filesystem::path{bundle.folder()}.parent_path()};
    auto drivers = loader.piGetPlugInsForClass("GPSPlugIn");
    ASSERT_TRUE(drivers);
    EXPECT_EQ(symbolOf(*drivers->nextObject(), "j"), "Campground");
}

TEST(MissingResources, WithoutTheSymbolMapEachIconIsItsOwnSymbol)
{
    const support::TestFolders none{{}};
    const BundleCopy whole;
    EXPECT_EQ(symbolOf(whole, "j"), "Campground");
    const BundleCopy missing;
    missing.remove("MagellanSymbolMap.plist");
    EXPECT_EQ(symbolOf(missing, "j"), "j");
    const BundleCopy broken;
    broken.put("MagellanSymbolMap.plist", "<plist version=\"1.0\"><dict><key>Campground</key>");
    EXPECT_EQ(symbolOf(broken, "j"), "j");
}

TEST(SharedTables, AreBuiltWithTheDriverOfMountedReceiversAlone)
{
    const support::TestFolders none{{}};
    const BundleCopy bundle;
    bundle.remove("MagellanSerialGPS.plist");
    const auto driver = driverOf(bundle);
    bundle.remove("MagellanSymbolMap.plist");
    EXPECT_EQ(symbolOf(*driver, "j"), "Campground");
}

TEST(SharedTables, AreBuiltWithTheSerialDriverAlone)
{
    const support::TestFolders none{{}};
    const support::TestPorts ports{{"/dev/one"}};
    const BundleCopy bundle;
    const auto view = bundle.read("MagellanGPS.plist");
    bundle.remove("MagellanGPS.plist");
    ASSERT_EQ(driverOf(bundle)->className(), "MagellanSerialGPSPlugin");
    bundle.remove("MagellanSymbolMap.plist");
    bundle.put("MagellanGPS.plist", view);
    ASSERT_EQ(driverOf(bundle)->className(), "MagellanGPSPlugin");
    EXPECT_EQ(symbolOf(bundle, "j"), "Campground");
}

TEST(MissingResources, TheSymbolMapIsReadFromTheResources)
{
    const support::TestFolders none{{}};
    const BundleCopy bundle;
    bundle.put("MagellanSymbolMap.plist",
               "<plist version=\"1.0\"><dict><key>Tent</key><string>j</string></dict></plist>");
    EXPECT_EQ(symbolOf(bundle, "j"), "Tent");
    EXPECT_EQ(symbolOf(bundle, "c"), "c");
}

TEST(SharedTables, AreBuiltExactlyOnceEvenIfTheSerialDriverComesFirst)
{
    const support::TestFolders none{{}};
    const support::TestPorts ports{{"/dev/one"}};
    const BundleCopy bundle;
    const auto view = bundle.read("MagellanGPS.plist");
    bundle.remove("MagellanGPS.plist");
    EXPECT_EQ(driverOf(bundle)->className(), "MagellanSerialGPSPlugin");
    bundle.remove("MagellanSymbolMap.plist"); // reading it again would fail
    bundle.put("MagellanGPS.plist", view);
    EXPECT_EQ(driverOf(bundle)->className(), "MagellanGPSPlugin");
    EXPECT_EQ(symbolOf(bundle, "j"), "Campground");
}

TEST(MissingResources, WithoutALanguageFileAndADefaultErrorMinusTwoNamesTheVolume)
{
    support::ReceiverFolder receiver;
    receiver.unitFile("1");
    const support::TestFolders folders{{receiver.path()}};
    const BundleCopy bundle;
    bundle.remove("MagDefaultLanguage.plist");
    const auto status = std::make_shared<support::RecordingReceiver>();
    const support::LogCapture log;
    const auto error = driverOf(bundle)->gpsRunAcquire(status, {{"debug", 1}});
    ASSERT_TRUE(error);
    EXPECT_EQ(error->domain(), "com.Orvane.GPSPlugin.ErrorDomain");
    EXPECT_EQ(error->code(), -2);
    EXPECT_EQ(error->description(), "Magellan device data missing or in unregonized format");
    EXPECT_EQ(error->suggestion(), "Please make sure your Magellan device is connected and mounted "
                                   "on the desktop, and try again");
    EXPECT_EQ(error->path(), receiver.path());
    EXPECT_THAT(status->calls(), ElementsAre("gpsStateChange 0"));
    EXPECT_THAT(log.lines(), ElementsAre("MagellanGPSPlugin: " + error->text()));
}

TEST(MissingResources, ALanguageFileReplacesTheMissingDefault)
{
    support::ReceiverFolder receiver;
    receiver.unitFile("1");
    receiver.languageFile({"TrackLogs=T"});
    receiver.put("T/t.log", {sentence("PMGNTRK,4600.000,N,00730.000,E,00500,M,120000,A,T,290208")});
    const support::TestFolders folders{{receiver.path()}};
    const BundleCopy bundle;
    bundle.remove("MagDefaultLanguage.plist");
    const auto status = std::make_shared<support::RecordingReceiver>();
    EXPECT_EQ(driverOf(bundle)->gpsRunAcquire(status, {}), std::nullopt);
    ASSERT_TRUE(status->waitUntilIdle());
    EXPECT_THAT(status->calls(), Contains("newTrack {name = \"T\"}"));
}

/// The error of an acquire without a device.
gps::Error noDeviceError(const BundleCopy& bundle)
{
    return driverOf(bundle)
        ->gpsRunAcquire(std::make_shared<support::RecordingReceiver>(), {})
        .value();
}

TEST(MissingResources, TextsComeFromTheStringTable)
{
    const support::TestFolders none{{}};
    const BundleCopy bundle;
    bundle.put("en.lproj/Localizable.strings",
               "\"No location was selected for Magellan device\" = \"Kein Ger\xC3\xA4t\";");
    EXPECT_EQ(noDeviceError(bundle).description(), "Kein Ger\xC3\xA4t");
    EXPECT_EQ(noDeviceError(bundle).suggestion(),
              "Please make sure your Magellan device is connected and mounted on the desktop, and "
              "try again");
}

/// A bundle whose string table puts each of its texts in brackets.
class BracketedTexts : public testing::Test {
protected:
    BracketedTexts()
    {
        const auto table = gps::parseStringTable(bundle.read("en.lproj/Localizable.strings"));
        std::string text;
        for (const auto& [key, value] : table)
            text += '"' + key + "\" = \"[" + key + "]\";\n";
        bundle.put("en.lproj/Localizable.strings",
                   text + "\"Couldn't open communications port /dev/null\" = \"twice\";");
    }

    /// Expects both texts of an error in brackets.
    static void expectBracketed(const std::optional<gps::Error>& error,
                                const std::string& description)
    {
        ASSERT_TRUE(error) << description;
        EXPECT_EQ(error->description(), '[' + description + ']');
        EXPECT_THAT(error->suggestion(), Optional(AllOf(StartsWith("["), EndsWith("]"))));
    }

    support::TestFolders folders{{}};
    support::ReceiverFolder receiver;
    BundleCopy bundle;
    std::shared_ptr<support::RecordingReceiver> status =
        std::make_shared<support::RecordingReceiver>();
};

TEST_F(BracketedTexts, ASetUpErrorIsTranslated)
{
    expectBracketed(driverOf(bundle)->gpsRunAcquire(status, {}),
                    "No location was selected for Magellan device");
    bundle.remove("MagDefaultLanguage.plist");
    receiver.unitFile("1");
    support::TestFolders::set({receiver.path()});
    expectBracketed(driverOf(bundle)->gpsRunAcquire(status, {}),
                    "Magellan device data missing or in unregonized format");
}

TEST_F(BracketedTexts, EveryRefusalOfAnImportIsTranslated)
{
    const auto driver = driverOf(bundle);
    const auto import = [&](const gps::Value& path) {
        return driver->gpsRunAcquire(status, {{"sourcePath", path}});
    };
    expectBracketed(import(7), "No extension exists on selected file");
    expectBracketed(import("x"), "Unrecognized extension on selected file");
    expectBracketed(import(receiver.put("empty.upt", {})), "Couldn't open file");
    expectBracketed(import(receiver.put("other.upt", {"other"})), "Contents of file unrecognized");
}

TEST_F(BracketedTexts, TheErrorsOfUnreadableFilesAreTranslated)
{
    const auto driver = driverOf(bundle);
    const support::LogCapture log;
    for (const auto& [file, kind] :
         std::vector<std::pair<std::string, std::string>>{{"/none.log", "track"},
                                                          {"/none.upt", "waypoint"},
                                                          {"/none.rte", "route"},
                                                          {"/none.gs", "geocache"}}) {
        (void)driver->gpsRunAcquire(status, {{"sourcePath", file}});
        ASSERT_FALSE(log.errors().empty());
        expectBracketed(log.errors().back(), "Couldn't read " + kind + " data from device");
    }
}

TEST_F(BracketedTexts, TheErrorOfAPortIsTranslatedOnceAndThenFilledWithThePath)
{
    const support::TestPorts ports{{"/dev/null"}};
    auto drivers = bundle.load().piGetPlugInsForClass("GPSPlugIn");
    (void)drivers->nextObject();
    const auto driver = drivers->nextObject();
    const gps::Value null{"/dev/null"};
    const auto devices = driver->deviceList();
    const auto found = std::find_if(devices.begin(), devices.end(), [&](const gps::Value& device) {
        return *device.as<gps::Dictionary>()->find("location") == null;
    });
    driver->gpsView()
        ->find<gps::PopUpButton>("deviceListMenu")
        ->pick(static_cast<std::size_t>(found - devices.begin()));
    ASSERT_EQ(driver->gpsRunAcquire(status, {}), std::nullopt);
    ASSERT_TRUE(status->waitUntilIdle());
    EXPECT_THAT(status->calls(),
                Contains(AllOf(HasSubstr("\"[Couldn't open communications port /dev/null]\""),
                               HasSubstr("\"[The port might be in use by another program]\""))));
}

TEST(MissingResources, WithoutAStringTableTextsAreInEnglish)
{
    const support::TestFolders none{{}};
    const BundleCopy bundle;
    bundle.remove("en.lproj/Localizable.strings");
    EXPECT_EQ(noDeviceError(bundle).description(), "No location was selected for Magellan device");
}

} // namespace
} // namespace magellan
