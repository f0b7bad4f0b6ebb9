// SPDX-License-Identifier: MIT

#include "host/bundle/PlugInBundle.h"

#include <gmock/gmock.h>

#include "support/TemporaryFolder.h"

namespace {

using testing::HasSubstr;

std::string plist(const std::string& executable, const std::string& extra)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict><key>CFBundleExecutable</key><string>" +
           executable + "</string>" + extra + "</dict></plist>";
}

std::string refusalOf(const std::string& path)
{
    host::PlugInBundle bundle;
    const auto failure = host::loadBundle(path, bundle);
    EXPECT_TRUE(bundle.path.empty()) << "untouched after a failure";
    return failure ? *failure->description() : "loaded";
}

TEST(PlugInBundle, MissingFolderIsRefused)
{
    EXPECT_THAT(refusalOf("/nowhere/Some.bundle"), HasSubstr("no plug-in bundle at this place"));
}

TEST(PlugInBundle, FolderWithoutAnInfoPlistIsRefused)
{
    const support::TemporaryFolder folder;
    EXPECT_THAT(refusalOf(folder.path()), HasSubstr("Info.plist"));
}

TEST(PlugInBundle, BrokenInfoPlistIsRefused)
{
    const support::TemporaryFolder folder;
    folder.put("Contents/Info.plist", "<plist><dict>");
    EXPECT_THAT(refusalOf(folder.path()), HasSubstr("Info.plist"));
}

TEST(PlugInBundle, ModuleThatIsNoModuleIsRefused)
{
    const support::TemporaryFolder folder;
    folder.put("Contents/Info.plist", plist("Some", "<key>NSPrincipalClass</key><string>Loader</string>"));
    folder.put("Contents/Linux/Some", "not a module");
    EXPECT_THAT(refusalOf(folder.path()), HasSubstr("cannot be loaded"));
}

TEST(PlugInBundle, MissingModuleIsRefused)
{
    const support::TemporaryFolder folder;
    folder.put("Contents/Info.plist", plist("Some", ""));
    EXPECT_THAT(refusalOf(folder.path()), HasSubstr("cannot be loaded"));
}

TEST(PlugInBundle, PlaceBesideTheProgramComesBeforeTheInstalledOnes)
{
    const auto places = host::bundlePlaces("/opt/x/bin/magellangps");
    ASSERT_EQ(places.size(), 3U);
    EXPECT_THAT(places[0], testing::StartsWith("/opt/x/bin/"));
    EXPECT_THAT(places[1], testing::StartsWith("/opt/x/lib/"));
    EXPECT_THAT(places[2], testing::StartsWith("/opt/x/lib/magellangps/"));
}

TEST(PlugInBundle, GivenPathIsTakenAsItIs)
{
    EXPECT_EQ(host::findBundle("/nowhere"), "/nowhere");
}

} // namespace
