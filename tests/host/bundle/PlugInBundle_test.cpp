// SPDX-License-Identifier: MIT

#include "host/bundle/PlugInBundle.h"

#include "host/FakeDriver.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

std::string plist(const std::string& executable, const std::string& extra)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist "
           "version=\"1.0\"><dict><key>CFBundleExecutable</key><string>" +
           executable + "</string>" + extra + "</dict></plist>";
}

std::string refusalOf(const std::string& path)
{
    host::PlugInBundle bundle;
    const auto failure = host::loadBundle(path, bundle);
    EXPECT_TRUE(bundle.path.empty()) << "untouched after a failure";
    return failure ? *failure->description() : "loaded";
}

TEST(PlugInBundle, MissingFolderIsRejected)
{
    EXPECT_THAT(refusalOf("/nowhere/Some.bundle"), HasSubstr("no plug-in bundle at this path"));
}

TEST(PlugInBundle, FolderWithoutAnInfoPlistIsRejected)
{
    const support::TemporaryFolder folder;
    EXPECT_THAT(refusalOf(folder.path()), HasSubstr("Info.plist"));
}

TEST(PlugInBundle, BrokenInfoPlistIsRejected)
{
    const support::TemporaryFolder folder;
    folder.put("Contents/Info.plist", "<plist><dict>");
    EXPECT_THAT(refusalOf(folder.path()), HasSubstr("Info.plist"));
}

TEST(PlugInBundle, FileThatIsNotAModuleIsRejected)
{
    const support::TemporaryFolder folder;
    folder.put("Contents/Info.plist",
               plist("Some", "<key>NSPrincipalClass</key><string>Loader</string>"));
    folder.put("Contents/Linux/Some", "not a module");
    EXPECT_THAT(refusalOf(folder.path()), HasSubstr("cannot be loaded"));
}

TEST(PlugInBundle, MissingModuleIsRejected)
{
    const support::TemporaryFolder folder;
    folder.put("Contents/Info.plist", plist("Some", ""));
    EXPECT_THAT(refusalOf(folder.path()), HasSubstr("cannot be loaded"));
}

TEST(PlugInBundle, BundleBesideTheProgramComesBeforeTheInstalledOne)
{
    const auto paths = host::bundleCandidates("/opt/x/bin/magellangps");
    ASSERT_EQ(paths.size(), 2U);
    EXPECT_THAT(paths[0], testing::StartsWith("/opt/x/bin/"));
    EXPECT_THAT(paths[1], testing::MatchesRegex("/opt/x/lib.*/magellangps/[^/]+"));
}

TEST(PlugInBundle, RequestedPathIsUsedUnchanged)
{
    EXPECT_EQ(host::findBundle("/nowhere"), "/nowhere");
}

// A loader that offers fresh drivers of these names.
struct FakeLoader : gps::VeloranPlugIn {
    bool piInitialize() override { return true; }
    std::string piName() override { return "Fake"; }
    gps::Dictionary piInfo() override { return {}; }
    std::string piClass() override { return "Class"; }
    std::int32_t piAPIVersion() override { return host::kLoaderAPIVersion; }
    std::optional<gps::PlugInEnumerator> piGetPlugInsForClass(std::string_view plugInClass) override
    {
        EXPECT_EQ(plugInClass, "Class");
        if (names.empty())
            return std::nullopt;
        std::vector<host::Driver> drivers;
        for (const auto& name : names)
            drivers.push_back(std::make_shared<support::FakeDriver>(name));
        return gps::PlugInEnumerator{drivers};
    }
    void piTerminate() override {}

    std::vector<std::string> names;
};

TEST(PlugInBundle, DriverThatIsOfferedLaterIsAddedAndTheOthersStay)
{
    FakeLoader loader;
    const host::Driver disk = std::make_shared<support::FakeDriver>("Disk");
    host::PlugInBundle bundle{.plugInClass = "Class", .drivers = {disk}, .loader = &loader};
    host::addNewDrivers(bundle);
    EXPECT_EQ(bundle.drivers.size(), 1U);
    loader.names = {"Disk", "Serial"};
    host::addNewDrivers(bundle);
    ASSERT_EQ(bundle.drivers.size(), 2U);
    EXPECT_EQ(bundle.drivers[0], disk);
    EXPECT_EQ(bundle.drivers[1]->gpsName(), "Serial");
    host::addNewDrivers(bundle);
    EXPECT_EQ(bundle.drivers.size(), 2U);
}

} // namespace
