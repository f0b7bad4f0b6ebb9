// SPDX-License-Identifier: MIT
// Names the mistakes as the window does when it reads its table.

#include "host/options/WindowTable.h"

#include "host/base/NearestName.h"

#include <gps/NumberText.h>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <optional>
#include <variant>
#include <vector>

namespace host {
namespace {

// What a setting needs; empty if a value is that.
std::string neededFlag(const ConfiguredOption& setting)
{
    return std::holds_alternative<bool>(setting.value) ? "" : "true or false";
}

const std::string* singleText(const ConfiguredOption& setting)
{
    const auto* const values = std::get_if<std::vector<std::string>>(&setting.value);
    return values != nullptr && values->size() == 1 ? &values->front() : nullptr;
}

std::string neededText(const ConfiguredOption& setting)
{
    return singleText(setting) != nullptr ? "" : "a text";
}

std::string neededNumber(const ConfiguredOption& setting)
{
    const auto* const text = singleText(setting);
    const auto number = text != nullptr ? gps::wholeInteger(*text) : std::nullopt;
    return number && *number >= 1 && *number <= kMostWindowBackups
               ? ""
               : fmt::format("a number from 1 to {}", kMostWindowBackups);
}

std::string neededName(const ConfiguredOption& setting,
                       const std::array<std::string_view, 3>& names)
{
    const auto* const text = singleText(setting);
    return text != nullptr && std::find(names.begin(), names.end(), *text) != names.end()
               ? ""
               : fmt::format(R"("{}")", fmt::join(names, R"(", ")"));
}

struct WindowKey {
    std::string_view name;
    std::string (*needed)(const ConfiguredOption& setting);
};

constexpr std::array<WindowKey, 9> kWindowKeys{
    {{"units", [](const ConfiguredOption& setting) { return neededName(setting, kUnitNames); }},
     {"utc", neededFlag},
     {"tiles", [](const ConfiguredOption& setting) { return neededName(setting, kTileNames); }},
     {"tile-file", neededText},
     {"folder", neededText},
     {"keep-backups", neededNumber},
     {"new-only", neededFlag},
     {"save-new", neededFlag},
     {"save-folder", neededText}}};

std::string unknownSetting(const std::string& name)
{
    std::vector<std::string> names;
    names.reserve(kWindowKeys.size());
    for (const auto& key : kWindowKeys)
        names.emplace_back(key.name);
    const auto guess = nearestName(name, names);
    return fmt::format("the window has no setting \"{}\"{}", name,
                       guess.empty() ? "" : fmt::format(", did you mean \"{}\"?", guess));
}

} // namespace

std::string windowMistake(const ConfiguredOption& setting)
{
    const auto* const key =
        std::find_if(kWindowKeys.begin(), kWindowKeys.end(),
                     [&setting](const WindowKey& each) { return each.name == setting.name; });
    if (key == kWindowKeys.end())
        return unknownSetting(setting.name);
    const auto needed = key->needed(setting);
    return needed.empty() ? "" : fmt::format("\"{}\" needs {}", setting.name, needed);
}

} // namespace host
