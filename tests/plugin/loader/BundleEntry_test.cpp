// SPDX-License-Identifier: MIT
// The built module: its entry point and exported symbols.

#include <gps/DictionaryHelpers.h>
#include <gps/Error.h>
#include <gps/GPSPlugInProtocol.h>
#include <gps/Value.h>
#include <gps/VeloranPlugIn.h>
#include <gps/View.h>
#include <platform/OrvUtils/OrvDebug.h>
#include <plugin/codec/SymbolMap.h>
#include <support/ReceiverFolder.h>
#include <support/RecordingReceiver.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <memory>
#include <set>
#include <string>

#include <dlfcn.h>

namespace magellan {
namespace {

constexpr char kModule[] =
    MAGELLAN_BIN_DIR "/MagellanGPSPlugin.bundle/Contents/Linux/MagellanGPSPlugin.so";

/// The module, loaded as a host does.
void* module()
{
    static void* const handle = ::dlopen(kModule, RTLD_NOW | RTLD_LOCAL);
    return handle;
}

/// The exported symbol of this name.
template <typename T> T* exported(const char* name)
{
    void* symbol = ::dlsym(module(), name);
    EXPECT_NE(symbol, nullptr) << name;
    return reinterpret_cast<T*>(symbol);
}

gps::PrincipalClassEntry entry()
{
    return reinterpret_cast<gps::PrincipalClassEntry>(::dlsym(module(), gps::kPrincipalClassEntry));
}

TEST(BundleEntry, ReturnsTheLoaderOnlyForItsClass)
{
    ASSERT_NE(module(), nullptr) << ::dlerror();
    ASSERT_NE(entry(), nullptr);
    auto* const loader = entry()("MagellanGPSPluginLoader");
    ASSERT_NE(loader, nullptr);
    EXPECT_EQ(loader, entry()("MagellanGPSPluginLoader"));
    EXPECT_EQ(loader->piName(), "Magellan GPS PlugIns");
    for (const auto* other :
         {"", "magellangpspluginloader", "MagellanGPSPlugin", "MagellanGPSPluginLoader2"})
        EXPECT_EQ(entry()(other), nullptr) << other;
    EXPECT_EQ(entry()(nullptr), nullptr);
}

TEST(BundleEntry, ADriverOfTheModuleWorksThroughItsInterface)
{
    const support::TestFolders none{{}};
    auto drivers = entry()("MagellanGPSPluginLoader")->piGetPlugInsForClass("GPSPlugIn");
    ASSERT_TRUE(drivers);
    const auto driver = drivers->nextObject();
    EXPECT_EQ(driver->gpsName(), "Magellan");
    ASSERT_NE(driver->gpsView(), nullptr);
    EXPECT_NE(driver->gpsView()->find<gps::PopUpButton>("deviceListMenu"), nullptr);
    EXPECT_NE(driver->gpsView()->find<gps::Button>("deviceButton"), nullptr);
}

TEST(BundleEntry, ARangeErrorKeepsItsTypeOutsideTheModule)
{
    const support::TestFolders none{{}};
    const support::ReceiverFolder folder;
    const auto file = folder.put("t.log", {support::sentence("PMGNTRK,1")});
    const auto driver =
        entry()("MagellanGPSPluginLoader")->piGetPlugInsForClass("GPSPlugIn")->nextObject();
    const auto status = std::make_shared<support::RecordingReceiver>();
    EXPECT_THROW((void)driver->gpsRunAcquire(status, {{"sourcePath", file}}), gps::RangeError);
    EXPECT_THAT(status->calls(),
                testing::ElementsAre("startTransfer 1", "endTransfer 1", "gpsStateChange 0"));
}

TEST(BundleEntry, TheFallbackIconIsExported)
{
    EXPECT_STREQ(*exported<decltype(kMagellanSymbol_crossed_box)>("kMagellanSymbol_crossed_box"),
                 "a");
}

TEST(BundleEntry, TheDebugLevelIsStoredInTheModuleAndTheFramework)
{
    auto* const level = exported<decltype(GarminDebugLevel)>("GarminDebugLevel");
    const auto set = exported<decltype(GarminSetDebugLevel)>("GarminSetDebugLevel");
    set(3);
    EXPECT_EQ(*level, 3);
    EXPECT_TRUE(gps::OrvDebugLevelIs(3));
    EXPECT_TRUE(exported<decltype(DebugLevelIs)>("DebugLevelIs")(3));
    EXPECT_FALSE(exported<decltype(DebugLevelIs)>("DebugLevelIs")(4));
    const gps::Dictionary options{{"debug", 0}};
    exported<decltype(SetDebugLevelFromDictionary)>("SetDebugLevelFromDictionary")(&options);
    EXPECT_EQ(*level, 1);
    set(0);
    EXPECT_EQ(*level, 0);
    EXPECT_FALSE(gps::OrvDebugLevelIs(1));
}

TEST(BundleEntry, TheSettersAndGettersWorkOnAHostsDictionary)
{
    const std::array<const char*, 2> texts{"zero", "one"};
    const std::array<std::string, 2> strings{"zero", "one"};
    const std::int16_t number = -16;
    gps::Dictionary dictionary;
    exported<decltype(SetFloatInDictionary)>("SetFloatInDictionary")(&dictionary, "a", 0.5F);
    exported<decltype(SetNumberInDictionary)>("SetNumberInDictionary")(
        &dictionary, "b", gps::NumberType::kInt16, &number);
    exported<decltype(SetIntInDictionary)>("SetIntInDictionary")(&dictionary, "c", 7);
    exported<decltype(SetCStringInDictionary)>("SetCStringInDictionary")(&dictionary, "d", "text");
    exported<decltype(SetCStringInDictionaryIfNotEmpty)>("SetCStringInDictionaryIfNotEmpty")(
        &dictionary, "d", "");
    exported<decltype(SetLatin1CStringInDictionary)>("SetLatin1CStringInDictionary")(&dictionary,
                                                                                     "e", "\xE9");
    exported<decltype(SetLatin1CStringInDictionaryIfNotEmpty)>(
        "SetLatin1CStringInDictionaryIfNotEmpty")(&dictionary, "e", "");
    exported<decltype(SetStringInDictionaryFromCStringList)>(
        "SetStringInDictionaryFromCStringList")(&dictionary, "f", texts.data(), 1, 1);
    exported<decltype(SetStringInDictionaryFromCFStringList)>(
        "SetStringInDictionaryFromCFStringList")(&dictionary, "g", strings.data(), 1, 0);
    exported<decltype(SetGPSPointInDictionary)>("SetGPSPointInDictionary")(&dictionary, "point",
                                                                           {1, 2, 3, 4, 5});
    EXPECT_EQ(gps::describe(dictionary),
              "{a = 0.5, b = -16, c = 7, d = \"text\", e = \"\xC3\xA9\", f = \"one\", g = "
              "\"zero\", point = (1, 2, 3, 4, 5)}");
    EXPECT_TRUE(
        exported<decltype(GetBoolValueForKey)>("GetBoolValueForKey")(&dictionary, "c", false));
    EXPECT_EQ(exported<decltype(GetIntValueForKey)>("GetIntValueForKey")(&dictionary, "c", 0), 7);
}

TEST(BundleEntry, TheTimeZonesAreExported)
{
    EXPECT_EQ(exported<decltype(GetGMTOffsetFromTimeZoneName)>("GetGMTOffsetFromTimeZoneName")(
                  "Asia/Kolkata"),
              19800);
    EXPECT_EQ(exported<decltype(GetGMTOffsetFromTimeZoneNameWithUnixTime)>(
                  "GetGMTOffsetFromTimeZoneNameWithUnixTime")("Europe/Zurich", 1214870400),
              7200);
}

/// The names that the linker script exports.
std::set<std::string> namesInTheMap()
{
    std::ifstream map{MAGELLAN_SOURCE_DIR "/plugin/exports.map"};
    std::set<std::string> names;
    for (std::string word; map >> word;) {
        if (word.back() == ';' && word != "*;" && word != "};")
            names.insert(word.substr(0, word.size() - 1));
    }
    return names;
}

/// The names that the module exports.
std::set<std::string> namesInTheModule()
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> listing{
        ::popen((std::string{"nm -D --defined-only '"} + kModule + "'").c_str(), "r"), &::pclose};
    std::set<std::string> names;
    std::array<char, 4096> line;
    while (listing &&
           std::fgets(line.data(), static_cast<int>(line.size()), listing.get()) != nullptr) {
        const std::string text = line.data();
        names.insert(text.substr(text.rfind(' ') + 1, text.size() - text.rfind(' ') - 2));
    }
    return names;
}

TEST(BundleEntry, TheModuleExportsExactlyTheNamesOfItsMap)
{
    EXPECT_EQ(namesInTheMap().size(), 20U);
    EXPECT_EQ(namesInTheModule(), namesInTheMap());
}

} // namespace
} // namespace magellan
