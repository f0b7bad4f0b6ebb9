// SPDX-License-Identifier: MIT

#include "platform/System/Plist.h"

#include <platform/System/Bundle.h>
#include <support/Language.h>
#include <support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

namespace gps {
namespace {

using support::plist;
using support::TemporaryFolder;

/// A bundle in a temporary folder.
class BundleTest : public testing::Test {
protected:
    [[nodiscard]] Bundle bundle() const { return Bundle{folder_.path("A.bundle")}; }
    [[nodiscard]] std::string path(const std::string& name) const
    {
        return folder_.path("A.bundle/Contents/" + name);
    }
    void put(const std::string& name, const std::string& content) const
    {
        folder_.put("A.bundle/Contents/" + name, content);
    }

    [[nodiscard]] std::optional<ViewOutlets> load(const std::string& view) const
    {
        put("Resources/V.plist", plist(view));
        return bundle().loadView("V");
    }

    TemporaryFolder folder_;
};

TEST_F(BundleTest, ARelativePathIsResolvedWhenTheBundleIsOpened)
{
    put("Info.plist", plist("<dict><key>CFBundleExecutable</key><string>A.so</string></dict>"));
    const auto previous = std::filesystem::current_path();
    std::filesystem::current_path(folder_.path());
    const Bundle opened{"A.bundle"};
    std::filesystem::current_path(previous);
    EXPECT_EQ(opened.path(), std::filesystem::canonical(folder_.path("A.bundle")));
    EXPECT_EQ(opened.executablePath(), opened.path() + "/Contents/Linux/A.so");
}

TEST_F(BundleTest, AnEmptyPathIsNotTheWorkingDirectory)
{
    EXPECT_EQ(Bundle{""}.path(), "");
}

TEST_F(BundleTest, TheInformationDictionaryIsInfoPlist)
{
    EXPECT_TRUE(bundle().infoDictionary().empty());
    put("Info.plist", plist("<dict><key>NSPrincipalClass</key><string>Loader</string></dict>"));
    EXPECT_EQ(bundle().infoDictionary(), (Dictionary{{"NSPrincipalClass", "Loader"}}));
    put("Info.plist", plist("<array/>"));
    EXPECT_TRUE(bundle().infoDictionary().empty());
}

TEST_F(BundleTest, TheExecutableIsTheOneThatInfoPlistNames)
{
    EXPECT_EQ(bundle().executablePath(), std::nullopt);
    put("Info.plist", plist("<dict><key>CFBundleExecutable</key><string>A.so</string></dict>"));
    EXPECT_EQ(bundle().executablePath(), path("Linux/A.so"));
}

TEST_F(BundleTest, AnExecutableOutsideTheBundleIsRejected)
{
    for (const char* name : {"<string></string>", "<string>../../../A.so</string>",
                             "<string>/A.so</string>", "<integer>1</integer>"}) {
        put("Info.plist",
            plist("<dict><key>CFBundleExecutable</key>" + std::string{name} + "</dict>"));
        EXPECT_EQ(bundle().executablePath(), std::nullopt) << name;
    }
}

TEST_F(BundleTest, AResourceIsAFileThatExists)
{
    put("Resources/a.plist", "");
    put("Resources/folder.plist/inside", "");
    EXPECT_EQ(bundle().pathForResource("a", "plist"), path("Resources/a.plist"));
    EXPECT_EQ(bundle().pathForResource("a", "txt"), std::nullopt);
    EXPECT_EQ(bundle().pathForResource("folder", "plist"), std::nullopt);
}

TEST_F(BundleTest, ADictionaryResourceHoldsADictionary)
{
    put("Resources/a.plist", plist("<dict><key>Routes</key><string>Routes</string></dict>"));
    put("Resources/b.plist", plist("<string/>"));
    EXPECT_EQ(bundle().dictionaryResource("a"), (Dictionary{{"Routes", "Routes"}}));
    EXPECT_EQ(bundle().dictionaryResource("b"), std::nullopt);
    EXPECT_EQ(bundle().dictionaryResource("c"), std::nullopt);
}

TEST_F(BundleTest, AViewComesWithItsOutletsConnected)
{
    const auto outlets = load(R"(<dict>
        <key>class</key><string>View</string> <key>identifier</key><string>gpsView</string>
        <key>subviews</key><array>
            <dict><key>class</key><string>View</string> <key>identifier</key><string>box</string>
                <key>subviews</key><array>
                    <dict><key>class</key><string>PopUpButton</string> <key>identifier</key><string>deviceListMenu</string>
                        <key>hidden</key><true/></dict>
                </array></dict>
            <dict><key>class</key><string>Button</string> <key>identifier</key><string>deviceButton</string>
                <key>title</key><string>Authorize</string> <key>hidden</key><false/></dict>
        </array></dict>)");
    ASSERT_TRUE(outlets);
    ASSERT_NE(outlets->gpsView, nullptr);
    EXPECT_FALSE(outlets->gpsView->isHidden());
    ASSERT_EQ(outlets->gpsView->subviews().size(), 2U);
    ASSERT_NE(outlets->deviceListMenu, nullptr);
    EXPECT_TRUE(outlets->deviceListMenu->isHidden());
    ASSERT_NE(outlets->deviceButton, nullptr);
    EXPECT_EQ(outlets->deviceButton->title(), "Authorize");
    EXPECT_FALSE(outlets->deviceButton->isHidden());
    EXPECT_EQ(outlets->gpsView->find<Button>("deviceButton"), outlets->deviceButton.get());
}

TEST_F(BundleTest, AnOutletIsNullIfItsViewIsMissingOrOfAnotherClass)
{
    const auto outlets = load(
        R"(<dict><key>class</key><string>View</string> <key>identifier</key><string>gpsView</string>
        <key>subviews</key><array>
            <dict><key>class</key><string>View</string> <key>identifier</key><string>deviceButton</string></dict></array></dict>)");
    ASSERT_TRUE(outlets);
    EXPECT_NE(outlets->gpsView, nullptr);
    EXPECT_EQ(outlets->deviceListMenu, nullptr);
    EXPECT_EQ(outlets->deviceButton, nullptr);
}

TEST_F(BundleTest, AnOutletKeepsTheWholeViewAlive)
{
    auto outlets = load(
        R"(<dict><key>class</key><string>View</string> <key>identifier</key><string>gpsView</string>
        <key>subviews</key><array>
            <dict><key>class</key><string>Button</string> <key>identifier</key><string>deviceButton</string></dict></array></dict>)");
    ASSERT_TRUE(outlets);
    const std::weak_ptr<View> root = outlets->gpsView;
    outlets->gpsView.reset();
    EXPECT_FALSE(root.expired());
    outlets->deviceButton.reset();
    EXPECT_TRUE(root.expired());
}

TEST_F(BundleTest, AMissingOrBrokenViewIsNotLoaded)
{
    EXPECT_FALSE(bundle().loadView("V"));
    const std::string start =
        "<dict><key>class</key><string>View</string><key>identifier</key><string>gpsView</string>";
    ASSERT_TRUE(load(start + "</dict>"));
    const std::string broken[] = {
        "<array/>",
        "<dict/>",
        "<dict><key>class</key><string>View</string></dict>",
        "<dict><key>identifier</key><string>gpsView</string></dict>",
        "<dict><key>class</key><string>Slider</string><key>identifier</key><string>gpsView</"
        "string></dict>",
        "<dict><key>class</key><integer>1</integer><key>identifier</key><string>gpsView</string></"
        "dict>",
        start + "<key>title</key><integer>1</integer></dict>",
        start + "<key>hidden</key><string>true</string></dict>",
        start + "<key>subviews</key><dict/></dict>",
        start + "<key>subviews</key><array><string>a</string></array></dict>",
        start + "<key>subviews</key><array><dict/></array></dict>",
        start,
    };
    for (const auto& view : broken)
        EXPECT_FALSE(load(view)) << view;
}

TEST_F(BundleTest, ALocalizedStringComesFromTheEnglishTable)
{
    put("Resources/en.lproj/Localizable.strings", "\"plain\" = \"translated\"; \"empty\" = \"\";");
    EXPECT_EQ(bundle().localizedString("plain"), "translated");
    EXPECT_EQ(bundle().localizedString("empty"), "empty");
    EXPECT_EQ(bundle().localizedString("missing"), "missing");
}

TEST_F(BundleTest, ALocalizedStringFollowsTheUsersLanguage)
{
    put("Resources/en.lproj/Localizable.strings", "\"key\" = \"English\"; \"new\" = \"New\";");
    put("Resources/de.lproj/Localizable.strings", "\"key\" = \"Deutsch\"; \"new\" = \"\";");
    put("Resources/gsw.lproj/Localizable.strings", "\"key\" = \"Dütsch\";");
    const auto textIn = [this](const char* all, const char* messages, const char* lang) {
        const support::Language language{all, messages, lang};
        return bundle().localizedString("key");
    };
    for (const char* lang : {"de", "de_CH.UTF-8", "de.UTF-8", "de@euro"})
        EXPECT_EQ(textIn(nullptr, nullptr, lang), "Deutsch") << lang;
    EXPECT_EQ(textIn(nullptr, nullptr, "gsw_CH"), "Dütsch");
    for (const char* lang :
         {"en_GB.UTF-8", "C", "C.UTF-8", "POSIX", "", "fr_CH", "DE", "german", "d", "../de", "/de"})
        EXPECT_EQ(textIn(nullptr, nullptr, lang), "English") << lang;
    EXPECT_EQ(textIn(nullptr, nullptr, nullptr), "English");
    EXPECT_EQ(textIn("de", "fr", "en"), "Deutsch");
    EXPECT_EQ(textIn("", "de", "en"), "Deutsch");
    EXPECT_EQ(textIn(nullptr, "en", "de"), "English");
}

TEST_F(BundleTest, ATextThatALanguageLacksIsEnglish)
{
    put("Resources/en.lproj/Localizable.strings", "\"key\" = \"English\"; \"new\" = \"New\";");
    put("Resources/de.lproj/Localizable.strings", "\"key\" = \"\";");
    const support::Language german{nullptr, nullptr, "de"};
    EXPECT_EQ(bundle().localizedString("key"), "English");
    EXPECT_EQ(bundle().localizedString("new"), "New");
    EXPECT_EQ(bundle().localizedString("missing"), "missing");
}

TEST_F(BundleTest, WithoutATableAStringIsItsKey)
{
    EXPECT_EQ(bundle().localizedString("key"), "key");
    EXPECT_EQ(bundle().localizedString(""), "");
}

/// A copy of a small system library, loaded from the given path.
class LoadedCopy {
public:
    explicit LoadedCopy(const std::string& path, const std::string& loadedAs)
    {
        void* const original = ::dlopen("libdl.so.2", RTLD_NOW);
        const link_map* map = nullptr;
        if (original == nullptr || ::dlinfo(original, RTLD_DI_LINKMAP, &map) != 0)
            return;
        std::filesystem::create_directories(std::filesystem::path{path}.parent_path());
        std::filesystem::copy_file(std::filesystem::canonical(map->l_name), path);
        module_ = ::dlopen(loadedAs.c_str(), RTLD_NOW | RTLD_LOCAL);
    }
    ~LoadedCopy()
    {
        if (module_ != nullptr)
            ::dlclose(module_);
    }
    LoadedCopy(const LoadedCopy&) = delete;
    LoadedCopy& operator=(const LoadedCopy&) = delete;

    /// An address inside it; null if it could not be loaded.
    [[nodiscard]] const void* address() const
    {
        const link_map* map = nullptr;
        return module_ != nullptr && ::dlinfo(module_, RTLD_DI_LINKMAP, &map) == 0 ? map->l_ld
                                                                                   : nullptr;
    }

private:
    void* module_ = nullptr;
};

TEST_F(BundleTest, AnAddressInAModuleLeadsToItsBundle)
{
    put("Info.plist", plist("<dict/>"));
    const LoadedCopy module{path("Linux/A.so"), path("Linux/A.so")};
    ASSERT_NE(module.address(), nullptr);
    const auto found = Bundle::containing(module.address());
    ASSERT_TRUE(found);
    EXPECT_EQ(found->path(), std::filesystem::canonical(bundle().path()));
}

TEST_F(BundleTest, ALinkToABundleLeadsToTheBundleItself)
{
    put("Info.plist", plist("<dict/>"));
    ASSERT_EQ(::symlink("A.bundle", folder_.path("link").c_str()), 0);
    const LoadedCopy module{path("Linux/A.so"), folder_.path("link/Contents/Linux/A.so")};
    ASSERT_NE(module.address(), nullptr);
    const auto found = Bundle::containing(module.address());
    ASSERT_TRUE(found);
    EXPECT_EQ(found->path(), std::filesystem::canonical(bundle().path()));
}

TEST_F(BundleTest, AModuleWithoutAnInfoPlistIsNotInABundle)
{
    const LoadedCopy module{path("Linux/A.so"), path("Linux/A.so")};
    ASSERT_NE(module.address(), nullptr);
    EXPECT_FALSE(Bundle::containing(module.address()));
}

TEST_F(BundleTest, AnAddressOutsideAnyModuleIsNotInABundle)
{
    const auto onHeap = std::make_unique<int>(0);
    EXPECT_FALSE(Bundle::containing(onHeap.get()));
    EXPECT_FALSE(Bundle::containing(nullptr));
}

} // namespace
} // namespace gps
