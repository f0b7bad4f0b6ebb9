// SPDX-License-Identifier: MIT
// The bundle that the tests run in has the plug-in's resources.

#include <plugin/common/PluginBundle.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace magellan {
namespace {

using testing::EndsWith;

TEST(PluginBundle, IsTheBundleThatThisCodeWasLoadedFrom)
{
    EXPECT_THAT(pluginBundle().path(), EndsWith("/MagellanGPSPlugin.bundle"));
    EXPECT_EQ(&pluginBundle(), &pluginBundle());
}

TEST(PluginBundle, NamesItsModuleAndItsPrincipalClass)
{
    const auto info = pluginBundle().infoDictionary();
    EXPECT_EQ(*info.findString("NSPrincipalClass"), "MagellanGPSPluginLoader");
    EXPECT_EQ(*info.findString("CFBundleExecutable"), "MagellanGPSPlugin.so");
}

TEST(PluginBundle, HoldsTheSymbolMapAndTheDefaultFolderNames)
{
    EXPECT_EQ(pluginBundle().dictionaryResource("MagDefaultLanguage"),
              (gps::Dictionary{{"MyPOIs", "My POIs"},
                               {"Geocaches", "Geocaches"},
                               {"Routes", "Routes"},
                               {"TrackLogs", "Track Logs"}}));
    const auto symbols = pluginBundle().dictionaryResource("MagellanSymbolMap");
    ASSERT_TRUE(symbols);
    EXPECT_EQ(*symbols->findString("Crossed Square"), "a");
}

TEST(PluginBundle, ItsViewHasThePopUpAndTheButtonBothHiddenAtFirst)
{
    const auto outlets = pluginBundle().loadView("MagellanGPS");
    ASSERT_TRUE(outlets);
    ASSERT_TRUE(outlets->gpsView && outlets->deviceListMenu && outlets->deviceButton);
    EXPECT_TRUE(outlets->deviceListMenu->isHidden());
    EXPECT_TRUE(outlets->deviceButton->isHidden());
    EXPECT_TRUE(pluginBundle().loadView("MagellanSerialGPS"));
}

} // namespace
} // namespace magellan
