// SPDX-License-Identifier: MIT
// Bundle: a folder with a module and its resources. NAME.bundle/Contents/{Info.plist, Linux/,
// Resources/}. Reads files only when asked; a Bundle itself is a path and may be copied. [any], but
// views are for the [host thread].

#pragma once

#include <gps/Value.h>
#include <gps/View.h>

#include <optional>
#include <string>
#include <string_view>

namespace gps {

class Bundle {
public:
    /// @param path  the bundle's folder; it need not exist
    explicit Bundle(std::string path);

    /// The bundle that the code or data at an address was loaded from; none when its file lies in
    /// no bundle.
    [[nodiscard]] static std::optional<Bundle> containing(const void* address);

    [[nodiscard]] const std::string& path() const noexcept { return path_; }

    /// Contents/Info.plist; empty when it cannot be read.
    [[nodiscard]] Dictionary infoDictionary() const;

    /// The module that Info.plist names under "CFBundleExecutable"; none without one.
    [[nodiscard]] std::optional<std::string> executablePath() const;

    /// Contents/Resources/NAME.TYPE; none when there is no such file.
    [[nodiscard]] std::optional<std::string> pathForResource(std::string_view name,
                                                             std::string_view type) const;

    /// The property list resource of that name, if it can be read as a dictionary.
    [[nodiscard]] std::optional<Dictionary> dictionaryResource(std::string_view name) const;

    /// Loads a view resource: a property list of nested dictionaries, each with "class" ("View",
    /// "PopUpButton", "Button"), "identifier", and optionally "title", "hidden" and "subviews".
    /// @return  its outlets, connected by identifier (one that it lacks is null); none when it is
    /// missing or broken
    [[nodiscard]] std::optional<ViewOutlets> loadView(std::string_view name) const;

    /// `localizedStringForKey:value:table:` with the default table,
    /// Resources/en.lproj/Localizable.strings: the text under the key, or the key itself where the
    /// table has none.
    [[nodiscard]] std::string localizedString(std::string_view key) const;

private:
    std::string path_;
};

/// Reads a string table: lines `"key" = "value";` with the one-letter escapes of C, and comments.
/// [any]
/// @return  what could be read up to the first mistake
[[nodiscard]] Dictionary parseStringTable(std::string_view text);

} // namespace gps
