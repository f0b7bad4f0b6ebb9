// SPDX-License-Identifier: MIT
// The library that parses the file does not keep comments, so the text itself is edited: it says
// where each value is. What comes out is parsed again and compared, since there are many ways to
// write a table.

#include "host/window/settings/SettingsFile.h"

#include "host/base/HostError.h"
#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"
#include "host/commandline/WindowTable.h"
#include "host/files/Files.h"

#include <platform/System/FileError.h>
#include <platform/System/FileManager.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace host {
namespace {

// A value that a setting cannot have leaves it as it is.
template <typename Value> void read(const toml::table& table, const char* key, Value& value)
{
    if (const auto* const typed = table.get_as<Value>(key))
        value = typed->get();
}

void read(const toml::table& table, const char* key, std::size_t& value)
{
    auto number = static_cast<std::int64_t>(value);
    read(table, key, number);
    if (number >= 1 && number <= kMostWindowBackups)
        value = static_cast<std::size_t>(number);
}

template <typename Choice> void read(const toml::table& table, const char* key,
                                     const std::array<std::string_view, 3>& names, Choice& value)
{
    std::string name;
    read(table, key, name);
    const auto* const found = std::find(names.begin(), names.end(), name);
    if (found != names.end())
        value = static_cast<Choice>(found - names.begin());
}

// What the command line's keys say.
void readShared(const toml::table& file, WindowSettings& settings)
{
    read(file, "utc", settings.isUtc);
    read(file, "keep-backups", settings.mostBackups);
    read(file, "new-only", settings.isNewOnly);
    if (const auto* const acquire = file["acquire"].as_table())
        read(*acquire, "new-only", settings.isNewOnly);
}

void readTable(const toml::table& table, WindowSettings& settings)
{
    read(table, "units", kUnitNames, settings.units);
    read(table, "utc", settings.isUtc);
    read(table, "tiles", kTileNames, settings.tiles);
    read(table, "tile-file", settings.tileFile);
    read(table, "folder", settings.downloadFolder);
    read(table, "keep-backups", settings.mostBackups);
    read(table, "new-only", settings.isNewOnly);
    read(table, "save-new", settings.isSaving);
    read(table, "save-folder", settings.saveFolder);
}

WindowSettings settingsIn(const toml::table& file)
{
    WindowSettings settings;
    readShared(file, settings);
    if (const auto* const table = file[kWindowTable].as_table())
        readTable(*table, settings);
    return settings;
}

// A basic string of TOML.
std::string tomlText(std::string_view text)
{
    std::string out = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\')
            out.append(1, '\\').append(1, c);
        else if (static_cast<unsigned char>(c) < ' ' || c == '\x7F')
            out += fmt::format("\\u{:04X}", static_cast<unsigned>(c));
        else
            out += c;
    }
    return out + '"';
}

struct Entry {
    std::string key;
    std::string value; // as the file has it
};

std::vector<Entry> entriesOf(const WindowSettings& settings)
{
    const auto flag = [](bool value) { return std::string{value ? "true" : "false"}; };
    return {{"units", tomlText(kUnitNames[static_cast<std::size_t>(settings.units)])},
            {"utc", flag(settings.isUtc)},
            {"tiles", tomlText(kTileNames[static_cast<std::size_t>(settings.tiles)])},
            {"tile-file", tomlText(settings.tileFile)},
            {"folder", tomlText(settings.downloadFolder)},
            {"keep-backups", std::to_string(settings.mostBackups)},
            {"new-only", flag(settings.isNewOnly)},
            {"save-new", flag(settings.isSaving)},
            {"save-folder", tomlText(settings.saveFolder)}};
}

// The settings that a text has to get.
std::vector<Entry> changesTo(const WindowSettings& before, const WindowSettings& after)
{
    const auto old = entriesOf(before);
    auto entries = entriesOf(after);
    std::size_t i = 0;
    std::erase_if(entries, [&](const Entry& entry) { return old[i++].value == entry.value; });
    return entries;
}

// Columns are counted in characters.
std::size_t offsetOf(std::string_view text, const toml::source_position& position)
{
    auto rest = text;
    for (toml::source_index line = 1; line < position.line; ++line)
        rest.remove_prefix(std::min(rest.find('\n'), rest.size() - 1) + 1);
    for (toml::source_index column = 1; column < position.column && !rest.empty(); ++column)
        (void)takeCharacter(rest);
    return text.size() - rest.size();
}

// A table header fills a line of its own.
std::size_t endOfLine(std::string_view text, std::size_t offset)
{
    return std::min(text.find('\n', offset), text.size() - 1) + 1;
}

struct Edit {
    std::size_t begin;
    std::size_t end;
    std::string text;
};

std::string edited(std::string text, std::vector<Edit> edits)
{
    std::stable_sort(edits.begin(), edits.end(),
                     [](const Edit& a, const Edit& b) { return a.begin > b.begin; });
    for (const auto& edit : edits)
        text.replace(edit.begin, edit.end - edit.begin, edit.text);
    return text;
}

std::string changed(std::string text, const toml::table* table, const std::vector<Entry>& changes)
{
    std::vector<Edit> edits;
    std::string added;
    for (const auto& [key, value] : changes) {
        const auto* const node = table != nullptr ? table->get(key) : nullptr;
        if (node != nullptr)
            edits.push_back(
                {offsetOf(text, node->source().begin), offsetOf(text, node->source().end), value});
        else
            added += fmt::format("{} = {}\n", key, value);
    }
    if (!text.empty() && text.back() != '\n')
        text += '\n';
    if (added.empty())
        return edited(std::move(text), std::move(edits));
    if (table == nullptr)
        return fmt::format("{}{}[{}]\n{}", text, text.empty() ? "" : "\n", kWindowTable, added);
    const auto at = endOfLine(text, offsetOf(text, table->source().begin));
    edits.push_back({at, at, added});
    return edited(std::move(text), std::move(edits));
}

// Whether two files differ at most in the settings.
bool areOthersEqual(toml::table a, toml::table b)
{
    for (auto* const file : {&a, &b}) {
        if (auto* const table = (*file)[kWindowTable].as_table()) {
            for (const auto& entry : entriesOf({}))
                table->erase(entry.key);
            if (table->empty())
                file->erase(kWindowTable);
        }
    }
    return a == b;
}

gps::Error notToml(const std::string& path, const toml::parse_error& error)
{
    return hostError(trFormat("The configuration file is not TOML: line {} ({})",
                              error.source().begin.line, error.description()),
                     tr("Correct the file"), path);
}

gps::Error tableMistake(const std::string& path, const TableMistake& mistake)
{
    return hostError(trFormat("The configuration file, line {}: {}", mistake.line, mistake.what),
                     tr("Correct the file"), path);
}

// @param text  out: empty if the file is missing
std::optional<gps::Error> readText(const std::string& path, std::string& text)
{
    auto failure = gps::FileManager{}.readFile(path, text);
    if (failure && failure->code() == gps::FileErrorCode::kReadNoSuchFile) {
        text.clear();
        return std::nullopt;
    }
    return failure;
}

} // namespace

std::optional<gps::Error> readSettings(const std::string& path, WindowSettings& settings)
{
    settings = {};
    std::string text;
    if (auto failure = readText(path, text))
        return failure;
    const auto file = toml::parse(text);
    if (!file)
        return notToml(path, file.error());
    settings = settingsIn(file.table());
    const auto* const table = file.table()[kWindowTable].as_table();
    const auto mistake = table != nullptr ? findWindowMistake(*table) : std::nullopt;
    return mistake ? std::optional{tableMistake(path, *mistake)} : std::nullopt;
}

std::optional<std::string> withSettings(const std::string& text, const WindowSettings& settings)
{
    const auto before = toml::parse(text);
    if (!before)
        return std::nullopt;
    const auto changes = changesTo(settingsIn(before.table()), settings);
    if (changes.empty())
        return text;
    auto result = changed(text, before.table()[kWindowTable].as_table(), changes);
    const auto after = toml::parse(result);
    if (!after || settingsIn(after.table()) != settings ||
        !areOthersEqual(before.table(), after.table()))
        return std::nullopt;
    return result;
}

std::optional<gps::Error> writeSettings(const std::string& path, const WindowSettings& settings)
{
    std::string text;
    if (auto failure = readText(path, text))
        return failure;
    if (const auto file = toml::parse(text); !file)
        return notToml(path, file.error());
    const auto changed = withSettings(text, settings);
    if (!changed)
        return hostError(
            tr("The configuration file has the window's settings in a form that cannot "
               "be changed"),
            tr("Write them below a line [window], each on a line of its own"), path);
    if (*changed == text)
        return std::nullopt;
    std::error_code missing;
    const auto target = std::filesystem::canonical(path, missing);
    return writeFile(missing ? path : target.string(), *changed);
}

} // namespace host
