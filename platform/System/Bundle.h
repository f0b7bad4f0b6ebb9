// SPDX-License-Identifier: MIT
// Bundle: a folder NAME.bundle that holds a module and its resources, in Contents/Info.plist,
// Contents/Linux/ and Contents/Resources/. A Bundle object holds only the path and reads files when
// asked, so it may be copied. [any], except for views, which belong to the [host thread].

#pragma once

#include <gps/Value.h>
#include <gps/View.h>

#include <optional>
#include <string>
#include <string_view>

namespace gps {

class Bundle {
public:
    /// @param path  the bundle's folder; it need not exist. A relative path is resolved now, so a
    ///              later change of the working directory does not matter
    explicit Bundle(const std::string& path);

    /// The bundle that the code or data at an address was loaded from; nullopt if it was not loaded
    /// from a bundle. [any]
    [[nodiscard]] static std::optional<Bundle> containing(const void* address);

    /// Absolute; empty if the bundle was given an empty path.
    [[nodiscard]] const std::string& path() const noexcept { return path_; }

    /// Contents/Info.plist; empty if it cannot be read. [any]
    [[nodiscard]] Dictionary infoDictionary() const;

    /// The path of the module that Info.plist names under "CFBundleExecutable"; nullopt if it names
    /// none. [any]
    [[nodiscard]] std::optional<std::string> executablePath() const;

    /// The path Contents/Resources/NAME.TYPE; nullopt if there is no such file. [any]
    [[nodiscard]] std::optional<std::string> pathForResource(std::string_view name,
                                                             std::string_view type) const;

    /// The property list resource of that name; nullopt if it is missing or not a dictionary. [any]
    [[nodiscard]] std::optional<Dictionary> dictionaryResource(std::string_view name) const;

    /// Loads a view resource: a property list of nested dictionaries, each with "class" ("View",
    /// "PopUpButton", "Button"), "identifier", and optionally "title", "hidden" and "subviews".
    /// [host thread]
    /// @return  the outlets, found by identifier, null where the view has no such element; nullopt
    ///          if the resource is missing or not valid
    [[nodiscard]] std::optional<ViewOutlets> loadView(std::string_view name) const;

    /// `localizedStringForKey:value:table:` with the default table, LANGUAGE.lproj/Localizable
    /// .strings among the resources: the text under the key in the table of the user's language,
    /// otherwise in that of English ("en"), otherwise the key itself. The language is that of
    /// LC_ALL, LC_MESSAGES or LANG, the first of these that is not empty. [any]
    [[nodiscard]] std::string localizedString(std::string_view key) const;

private:
    [[nodiscard]] std::optional<std::string> translation(const std::string& language,
                                                         std::string_view key) const;

    std::string path_;
};

} // namespace gps
