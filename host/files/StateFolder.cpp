// SPDX-License-Identifier: MIT
// Identifiers come from the device and are not trusted: a name must never lead out of the folder.

#include "host/files/StateFolder.h"

#include <gps/NumberText.h>

#include <cstddef>
#include <cstdlib>
#include <ctime>

namespace host {
namespace {

constexpr std::size_t kLongestName = 64;

std::string variable(const char* name)
{
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

// @param name      the variable that names the user's folder
// @param standard  where that is below the home folder otherwise
std::optional<std::string> folderIn(const char* name, std::string_view standard)
{
    constexpr std::string_view kOwn = "/magellangps";
    // A relative path is invalid and must be ignored (XDG Base Directory Specification).
    if (auto folder = variable(name); folder.starts_with('/'))
        return folder.append(kOwn);
    auto home = variable("HOME");
    return home.empty() ? std::nullopt : std::optional{home.append(standard).append(kOwn)};
}

} // namespace

std::optional<std::string> stateFolder()
{
    return folderIn("XDG_STATE_HOME", "/.local/state");
}

std::optional<std::string> cacheFolder()
{
    return folderIn("XDG_CACHE_HOME", "/.cache");
}

std::optional<std::string> configurationFile()
{
    const auto folder = folderIn("XDG_CONFIG_HOME", "/.config");
    return folder ? std::optional{*folder + "/config.toml"} : std::nullopt;
}

// Different identifiers can become the same name.
std::string nameOfDevice(std::string_view identifier)
{
    std::string name{identifier.substr(0, kLongestName)};
    for (char& c : name) {
        const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        if (!isLetter && !gps::isDigit(c) && c != '-')
            c = '_';
    }
    return name.empty() ? "device" : name;
}

// In UTC, so that names sort by time and no hour occurs twice when the clocks change.
std::string nameOfNow()
{
    const std::time_t now = std::time(nullptr);
    std::tm utc{};
    ::gmtime_r(&now, &utc);
    char text[sizeof "YYYYMMDDTHHMMSSZ"];
    return {text, std::strftime(text, sizeof text, "%Y%m%dT%H%M%SZ", &utc)};
}

} // namespace host
