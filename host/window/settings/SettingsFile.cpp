// SPDX-License-Identifier: MIT
// The library that parses the file does not keep comments, so the text itself is edited: it says
// where each value is. What comes out is parsed again and compared, since there are many ways to
// write a table.

#include "host/window/settings/SettingsFile.h"

#include "host/base/HostError.h"
#include "host/base/NearestName.h"
#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"
#include "host/commandline/Configuration.h"
#include "host/files/Files.h"
#include "host/options/WindowTable.h"

#include <platform/System/FileError.h>
#include <platform/System/FileManager.h>

#include <fmt/format.h>

// Errors as values.
#define TOML_EXCEPTIONS 0
#define TOML_ENABLE_FORMATTERS 0
#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <toml++/toml.h>

namespace host {
namespace {

// Reads the values of a table. Keeps the first mistake.
class SettingsReader {
public:
    SettingsReader(const toml::table& table, std::string path)
        : table_(table), path_(std::move(path))
    {}

    void read(const char* key, bool& value) { take<bool>(key, tr("true or false"), value); }
    void read(const char* key, std::string& value) { take<std::string>(key, tr("a text"), value); }

    void read(const char* key, std::size_t& value)
    {
        auto number = static_cast<std::int64_t>(value);
        take<std::int64_t>(key, tr("a number"), number);
        if (number >= 1 && number <= kMostWindowBackups)
            value = static_cast<std::size_t>(number);
        else
            note(key, trFormat("a number from 1 to {}", kMostWindowBackups));
    }

    template <typename Choice>
    void read(const char* key, const std::array<std::string_view, 3>& names, Choice& value)
    {
        std::string name{names[static_cast<std::size_t>(value)]};
        read(key, name);
        const auto* const found = std::find(names.begin(), names.end(), name);
        if (found != names.end())
            value = static_cast<Choice>(found - names.begin());
        else
            note(key, fmt::format(R"("{}")", fmt::join(names, R"(", ")")));
    }

    /// Looks for keys that nobody has asked for.
    void findUnknown()
    {
        for (const auto& [key, value] : table_) {
            const std::string name{key.str()};
            if (mistake_ || std::find(known_.begin(), known_.end(), name) != known_.end())
                continue;
            const auto guess = nearestName(name, known_);
            mistake_ = mistakeAt(
                key.source(),
                guess.empty() ? trFormat("the window has no setting \"{}\"", name)
                              : trFormat(R"(the window has no setting "{}", did you mean "{}"?)",
                                         name, guess));
        }
    }

    [[nodiscard]] std::optional<gps::Error> takeMistake() { return std::move(mistake_); }

private:
    template <typename Value> void take(const char* key, std::string_view form, Value& value)
    {
        known_.emplace_back(key);
        const auto* const node = table_.get(key);
        if (node == nullptr)
            return;
        if (const auto* const typed = node->template as<Value>())
            value = typed->get();
        else
            note(key, form);
    }

    void note(const char* key, std::string_view form)
    {
        if (mistake_)
            return;
        mistake_ = mistakeAt(table_.get(key)->source(), trFormat("\"{}\" needs {}", key, form));
    }

    [[nodiscard]] gps::Error mistakeAt(const toml::source_region& source,
                                       std::string_view what) const
    {
        return hostError(trFormat("The configuration file, line {}: {}", source.begin.line, what),
                         tr("Correct the file"), path_);
    }

    const toml::table& table_;
    std::string path_;
    std::vector<std::string> known_; // keys that were asked for
    std::optional<gps::Error> mistake_;
};

// What the command line's keys say.
void readShared(const toml::table& file, WindowSettings& settings)
{
    SettingsReader reader{file, {}}; // the command line reports mistakes in these
    reader.read("utc", settings.isUtc);
    reader.read("keep-backups", settings.mostBackups);
    reader.read("new-only", settings.isNewOnly);
    if (const auto* const acquire = file["acquire"].as_table())
        SettingsReader{*acquire, {}}.read("new-only", settings.isNewOnly);
}

std::optional<gps::Error> readTable(const toml::table& table, const std::string& path,
                                    WindowSettings& settings)
{
    SettingsReader reader{table, path};
    reader.read("units", kUnitNames, settings.units);
    reader.read("utc", settings.isUtc);
    reader.read("tiles", kTileNames, settings.tiles);
    reader.read("tile-file", settings.tileFile);
    reader.read("folder", settings.downloadFolder);
    reader.read("keep-backups", settings.mostBackups);
    reader.read("new-only", settings.isNewOnly);
    reader.read("save-new", settings.isSaving);
    reader.read("save-folder", settings.saveFolder);
    reader.findUnknown();
    return reader.takeMistake();
}

WindowSettings settingsIn(const toml::table& file)
{
    WindowSettings settings;
    readShared(file, settings);
    if (const auto* const table = file[kWindowTable].as_table())
        (void)readTable(*table, {}, settings);
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
    readShared(file.table(), settings);
    const auto* const table = file.table()[kWindowTable].as_table();
    return table != nullptr ? readTable(*table, path, settings) : std::nullopt;
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
