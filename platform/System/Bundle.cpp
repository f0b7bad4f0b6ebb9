// SPDX-License-Identifier: MIT
// A view resource is checked completely before any of it is used: a driver never gets half a view.

#include "Bundle.h"

#include "FileManager.h"
#include "Paths.h"
#include "PropertyList.h"
#include "StringTable.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include <dlfcn.h>

namespace gps {
namespace {

std::string parentOf(const std::string& path)
{
    return path.substr(0, path.rfind('/'));
}

/// The path with all links resolved; empty if there is no such file.
std::string resolved(const char* path)
{
    const std::unique_ptr<char, decltype(&std::free)> real{::realpath(path, nullptr), &std::free};
    return real ? real.get() : "";
}

/// Unchanged if the path is empty or the working directory no longer exists.
std::string absolute(const std::string& path)
{
    std::error_code failure;
    const auto whole = std::filesystem::absolute(path, failure);
    return path.empty() || failure ? path : whole.string();
}

constexpr char kEnglish[] = "en";

/// The user's language, such as "de"; English if none is set, or if what is set has no such form:
/// it becomes part of a path.
std::string userLanguage()
{
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* const value = std::getenv(name);
        if (value == nullptr || *value == '\0')
            continue;
        const std::string_view locale{value};
        const auto language = locale.substr(0, locale.find_first_of("_.@"));
        const bool isCode = (language.size() == 2 || language.size() == 3) &&
                            std::all_of(language.begin(), language.end(),
                                        [](char c) { return c >= 'a' && c <= 'z'; });
        return isCode ? std::string{language} : kEnglish;
    }
    return kEnglish;
}

bool isFile(const std::string& path)
{
    bool isFolder = false;
    return FileManager{}.fileExists(path, &isFolder) && !isFolder;
}

std::shared_ptr<View> makeElement(std::string_view className, const std::string& identifier,
                                  const std::string& title)
{
    if (className == "View")
        return std::make_shared<View>(identifier, title);
    if (className == "PopUpButton")
        return std::make_shared<PopUpButton>(identifier, title);
    if (className == "Button")
        return std::make_shared<Button>(identifier, title);
    return nullptr;
}

/// The value under a key if it is a T; null if it is missing. Sets `broken` for any other type.
template <typename T>
const T* optionalValue(const Dictionary& description, std::string_view key, bool& broken)
{
    const Value* value = description.find(key);
    const T* typed = value != nullptr ? value->as<T>() : nullptr;
    broken = broken || (value != nullptr && typed == nullptr);
    return typed;
}

/// A view with its subviews; null if any part is not valid. The property list limits the depth.
std::shared_ptr<View> makeView(const Dictionary& description)
{
    const auto* className = description.findString("class");
    const auto* identifier = description.findString("identifier");
    bool broken = className == nullptr || identifier == nullptr;
    const auto* title = optionalValue<std::string>(description, "title", broken);
    const auto* hidden = optionalValue<Number>(description, "hidden", broken);
    const auto* subviews = optionalValue<Array>(description, "subviews", broken);
    if (broken)
        return nullptr;
    auto view = makeElement(*className, *identifier, title != nullptr ? *title : std::string{});
    if (!view)
        return nullptr;
    view->setHidden(hidden != nullptr && hidden->boolValue());
    for (const auto& element : subviews != nullptr ? *subviews : Array{}) {
        const auto* inner = element.as<Dictionary>();
        auto subview = inner != nullptr ? makeView(*inner) : nullptr;
        if (!subview)
            return nullptr;
        view->addSubview(std::move(subview));
    }
    return view;
}

/// An outlet shares ownership of the whole view.
template <typename T>
std::shared_ptr<T> outlet(const std::shared_ptr<View>& view, std::string_view identifier)
{
    auto* found = view->find<T>(identifier);
    return found != nullptr ? std::shared_ptr<T>{view, found} : nullptr;
}

} // namespace

Bundle::Bundle(const std::string& path) : path_(absolute(path)) {}

std::optional<Bundle> Bundle::containing(const void* address)
{
    Dl_info module;
    if (::dladdr(address, &module) == 0 || module.dli_fname == nullptr)
        return std::nullopt;
    const std::string contents = parentOf(parentOf(resolved(module.dli_fname)));
    if (!isFile(contents + "/Info.plist"))
        return std::nullopt;
    return Bundle{parentOf(contents)};
}

Dictionary Bundle::infoDictionary() const
{
    return readPropertyListDictionary(joinPath(path_, "Contents/Info.plist"))
        .value_or(Dictionary{});
}

std::optional<std::string> Bundle::executablePath() const
{
    const auto info = infoDictionary();
    const auto* name = info.findString("CFBundleExecutable");
    if (name == nullptr || name->empty() || name->find('/') != std::string::npos)
        return std::nullopt;
    return joinPath(joinPath(path_, "Contents/Linux"), *name);
}

std::optional<std::string> Bundle::pathForResource(std::string_view name,
                                                   std::string_view type) const
{
    auto path = joinPath(joinPath(path_, "Contents/Resources"), name).append(".").append(type);
    return isFile(path) ? std::optional{std::move(path)} : std::nullopt;
}

std::optional<Dictionary> Bundle::dictionaryResource(std::string_view name) const
{
    const auto path = pathForResource(name, "plist");
    return path ? readPropertyListDictionary(*path) : std::nullopt;
}

std::optional<ViewOutlets> Bundle::loadView(std::string_view name) const
{
    const auto description = dictionaryResource(name);
    const auto view = description ? makeView(*description) : nullptr;
    if (!view)
        return std::nullopt;
    return ViewOutlets{outlet<View>(view, "gpsView"), outlet<PopUpButton>(view, "deviceListMenu"),
                       outlet<Button>(view, "deviceButton")};
}

std::string Bundle::localizedString(std::string_view key) const
{
    for (const std::string& language : {userLanguage(), std::string{kEnglish}}) {
        if (auto text = translation(language, key))
            return *std::move(text);
    }
    return std::string{key};
}

/// The text under a key in the table of a language; nullopt if it is missing or empty.
std::optional<std::string> Bundle::translation(const std::string& language,
                                               std::string_view key) const
{
    std::string text;
    const auto path = pathForResource(language + ".lproj/Localizable", "strings");
    if (!path || FileManager{}.readFile(*path, text, kLargestPropertyList))
        return std::nullopt;
    const auto table = parseStringTable(text);
    const auto* value = table.findString(key);
    return value != nullptr && !value->empty() ? std::optional{*value} : std::nullopt;
}

} // namespace gps
