// SPDX-License-Identifier: MIT
// A setting needs a value of one type, and some need one of a few values.

#include "host/commandline/WindowTable.h"

#include "host/base/NearestName.h"
#include "host/base/TranslatedFormat.h"

#include <fmt/ranges.h>

#include <algorithm>
#include <vector>

namespace host {
namespace {

// What a setting needs; empty if a value is that.
std::string neededFlag(const toml::node& value)
{
    return value.is_boolean() ? "" : tr("true or false");
}

std::string neededText(const toml::node& value)
{
    return value.is_string() ? "" : tr("a text");
}

std::string neededNumber(const toml::node& value)
{
    const auto* const number = value.as_integer();
    if (number == nullptr)
        return tr("a number");
    return number->get() >= 1 && number->get() <= kMostWindowBackups
               ? ""
               : trFormat("a number from 1 to {}", kMostWindowBackups);
}

std::string neededName(const toml::node& value, const std::array<std::string_view, 3>& names)
{
    const auto* const text = value.as_string();
    if (text == nullptr)
        return neededText(value);
    return std::find(names.begin(), names.end(), text->get()) != names.end()
               ? ""
               : fmt::format(R"("{}")", fmt::join(names, R"(", ")"));
}

struct WindowKey {
    std::string_view name;
    std::string (*needed)(const toml::node& value);
};

constexpr std::array<WindowKey, 9> kWindowKeys{
    {{"units", [](const toml::node& value) { return neededName(value, kUnitNames); }},
     {"utc", neededFlag},
     {"tiles", [](const toml::node& value) { return neededName(value, kTileNames); }},
     {"tile-file", neededText},
     {"folder", neededText},
     {"keep-backups", neededNumber},
     {"new-only", neededFlag},
     {"save-new", neededFlag},
     {"save-folder", neededText}}};

std::string unknownSetting(const std::string& name, const std::vector<std::string>& names)
{
    const auto guess = nearestName(name, names);
    return guess.empty()
               ? trFormat("the window has no setting \"{}\"", name)
               : trFormat(R"(the window has no setting "{}", did you mean "{}"?)", name, guess);
}

} // namespace

std::optional<TableMistake> findWindowMistake(const toml::table& table)
{
    std::vector<std::string> names;
    names.reserve(kWindowKeys.size());
    for (const auto& key : kWindowKeys) {
        names.emplace_back(key.name);
        const auto* const value = table.get(key.name);
        const auto needed = value != nullptr ? key.needed(*value) : "";
        if (!needed.empty())
            return TableMistake{value->source().begin.line,
                                trFormat("\"{}\" needs {}", key.name, needed)};
    }
    for (const auto& [key, value] : table) {
        const std::string name{key.str()};
        if (std::find(names.begin(), names.end(), name) == names.end())
            return TableMistake{key.source().begin.line, unknownSetting(name, names)};
    }
    return std::nullopt;
}

} // namespace host
