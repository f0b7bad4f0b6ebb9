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

} // namespace

std::optional<std::string> stateFolder()
{
    // A relative path is invalid and must be ignored (XDG Base Directory Specification).
    if (const auto state = variable("XDG_STATE_HOME"); state.starts_with('/'))
        return state + "/magellangps";
    const auto home = variable("HOME");
    return home.empty() ? std::nullopt : std::optional{home + "/.local/state/magellangps"};
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
