// SPDX-License-Identifier: MIT
// Reads the stored defaults for every query; there are few of both.

#include "UserDefaults.h"

#include "Paths.h"
#include "PropertyList.h"

#include <cstdlib>
#include <utility>

namespace gps {
namespace {

std::string environment(const char* name)
{
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

/// Source of the rules: the XDG Base Directory Specification. A relative path is ignored.
std::string configurationFolder()
{
    auto folder = environment("XDG_CONFIG_HOME");
    return folder.substr(0, 1) == "/" ? folder : environment("HOME") + "/.config";
}

std::optional<std::vector<std::string>> stringsOf(const Value* value)
{
    const auto* array = value != nullptr ? value->as<Array>() : nullptr;
    if (array == nullptr)
        return std::nullopt;
    std::vector<std::string> strings;
    for (const auto& element : *array) {
        const auto* text = element.as<std::string>();
        if (text == nullptr)
            return std::nullopt;
        strings.push_back(*text);
    }
    return strings;
}

} // namespace

UserDefaults& UserDefaults::standard()
{
    static UserDefaults& defaults =
        *new UserDefaults{joinPath(configurationFolder(), "com.Orvane.GPSPlugin/defaults.plist")};
    return defaults;
}

UserDefaults::UserDefaults(std::string path) : path_(std::move(path)) {}

void UserDefaults::setForThisRun(std::string_view key, Value value)
{
    thisRun_.set(key, std::move(value));
}

std::optional<std::vector<std::string>> UserDefaults::stringArrayForKey(std::string_view key) const
{
    if (const Value* value = thisRun_.find(key))
        return stringsOf(value);
    const auto stored = readPropertyListDictionary(path_);
    return stored ? stringsOf(stored->find(key)) : std::nullopt;
}

} // namespace gps
