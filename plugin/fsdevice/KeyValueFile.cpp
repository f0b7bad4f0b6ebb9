// SPDX-License-Identifier: MIT
// Parsing never fails: any text is a valid file.

#include "KeyValueFile.h"

#include "../common/Lines.h"
#include "../common/PluginBundle.h"

#include <gps/Characters.h>
#include <platform/System/FileManager.h>

#include <cstddef>
#include <utility>

namespace magellan {
namespace {

constexpr std::size_t kLargestKeyValueFile = std::size_t{1} << 20; // bytes; real ones have hundreds

void parseLine(std::string_view line, gps::Dictionary& dictionary)
{
    line = gps::withoutLeadingSpace(line);
    const auto key = line.substr(0, line.find('='));
    if (key.empty())
        return;
    const auto value = key.size() < line.size() ? line.substr(key.size() + 1) : std::string_view{};
    dictionary.setText(key, value);
}

} // namespace

bool mayBeReadLater(const gps::Error& error)
{
    return error.code() != gps::FileErrorCode::kReadNoSuchFile &&
           error.code() != gps::FileErrorCode::kReadNotAscii;
}

gps::Dictionary parseKeyValueText(std::string_view text)
{
    gps::Dictionary dictionary;
    forEachLine(text, [&dictionary](std::string_view line) { parseLine(line, dictionary); });
    return dictionary;
}

std::optional<gps::Error> readMagellanDictionaryFromPath(const std::string& path,
                                                         gps::Dictionary& dictionary)
{
    std::string text;
    if (auto error = gps::FileManager{}.readAsciiFile(path, text, kLargestKeyValueFile))
        return error;
    dictionary = parseKeyValueText(text);
    return std::nullopt;
}

std::string unitFilePath(const std::string& volume)
{
    return gps::joinPath(volume, "USBTRANS/UNIT_ID.DAT");
}

std::optional<gps::Error> readMagellanUnitIDFromPath(const std::string& volume,
                                                     gps::Dictionary& dictionary)
{
    return readMagellanDictionaryFromPath(unitFilePath(volume), dictionary);
}

std::optional<gps::Dictionary>
readMagellanFolderDictionaryFromPath(const std::string& volume, std::optional<gps::Error>* error)
{
    gps::Dictionary folders;
    auto failure =
        readMagellanDictionaryFromPath(gps::joinPath(volume, "USBTRANS/LANGUAGE.DAT"), folders);
    // An empty language file is used as it is: the volume then has no data folders.
    if (!failure)
        return folders;
    if (error != nullptr && failure->code() != gps::FileErrorCode::kReadNoSuchFile)
        *error = std::move(failure);
    return pluginBundle().dictionaryResource("MagDefaultLanguage");
}

} // namespace magellan
