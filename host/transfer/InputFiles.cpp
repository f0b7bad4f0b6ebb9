// SPDX-License-Identifier: MIT
// A file that cannot be looked at, such as one in a folder without permission, passes all checks:
// its reader reports why.

#include "host/transfer/InputFiles.h"

#include "host/base/HostError.h"
#include "host/base/NearestName.h"
#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"
#include "host/transfer/MapFileImport.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace host {
namespace {

namespace fs = std::filesystem;

// The file that may be meant, in the same folder; empty if none is like it.
std::string similarFile(const fs::path& file)
{
    std::vector<std::string> names;
    std::error_code error;
    const auto folder = file.has_parent_path() ? file.parent_path() : fs::path{"."};
    for (fs::directory_iterator entry{folder, error}; !error && entry != fs::directory_iterator{};
         entry.increment(error)) {
        if (entry->path().extension() == file.extension())
            names.push_back(entry->path().filename().string());
    }
    std::sort(names.begin(), names.end());
    const auto name = nearestName(file.filename().string(), names);
    return name.empty() ? "" : file.parent_path() / name;
}

gps::Error noSuchFile(const std::string& file)
{
    if (file.find_first_of("*?[") != std::string::npos)
        return hostError(tr("No file matches this pattern"), tr("Check the pattern and the folder"),
                         file);
    const auto similar = similarFile(file);
    return hostError(tr("There is no such file"),
                     similar.empty() ? tr("Check the name and the folder")
                                     : trFormat("Did you mean \"{}\"?", similar),
                     file);
}

// @param folderAdvice  what to do instead of naming a folder
std::optional<gps::Error> checkFile(const std::string& file, const char* folderAdvice)
{
    std::error_code error;
    const auto status = fs::status(file, error);
    if (error == std::errc::too_many_symbolic_link_levels)
        return systemError(
            tr("The file cannot be opened"),
            tr("It is a link that leads back to itself: name the file that it was for"), file,
            error.value());
    if (status.type() == fs::file_type::not_found)
        return noSuchFile(file);
    if (fs::is_directory(status))
        return hostError(tr("This is a folder"), folderAdvice, file);
    if (fs::is_other(status))
        return hostError(tr("This is a pipe or a device, not a file"),
                         tr("Save what comes from it as a file, and name that"), file);
    return std::nullopt;
}

bool isEmptyFile(const std::string& file)
{
    std::error_code error;
    return fs::is_regular_file(file, error) && fs::file_size(file, error) == 0 && !error;
}

gps::Error withNothingImported(const gps::Error& failure)
{
    return hostError(trFormat("{}, so nothing was imported", failure.description().value_or("")),
                     failure.suggestion().value_or(""), failure.path().value_or(""));
}

// @param files  gets the files of receivers in a folder and below it
std::optional<gps::Error> listFolder(const std::string& folder,
                                     const std::vector<std::string>& types,
                                     std::vector<std::string>& files)
{
    std::error_code error;
    fs::recursive_directory_iterator entry{folder, error};
    for (; !error && entry != fs::recursive_directory_iterator{}; entry.increment(error)) {
        const auto path = entry->path().string();
        std::error_code ignored;
        if (isOneOf(fileTypeOf(path), types) && entry->is_regular_file(ignored) &&
            !isEmptyFile(path))
            files.push_back(path);
    }
    if (error)
        return systemError(tr("A folder cannot be listed to its end"),
                           tr("Check its permissions and the medium"), folder, error.value());
    return std::nullopt;
}

// Among others such files are nothing unusual, and the driver reports them.
std::optional<gps::Error> checkSingleImport(const std::string& file)
{
    if (isEmptyFile(file))
        return hostError(tr("The file is empty"), tr("Copy it again"), file);
    const auto name = fs::path{file}.filename().replace_extension(fileTypeOf(file));
    if (!isMapFile(file) && name != fs::path{file}.filename())
        return hostError(
            tr("The extension of this file is in capitals, and drivers read only those "
               "in small letters"),
            trFormat("Rename it to {}", name.string()), file);
    return std::nullopt;
}

} // namespace

std::optional<gps::Error> expandFolders(std::vector<std::string>& files,
                                        const std::vector<std::string>& types)
{
    std::vector<std::string> expanded;
    for (const auto& file : files) {
        std::error_code ignored;
        if (!fs::is_directory(file, ignored) || isOneOf(fileTypeOf(file), types)) {
            expanded.push_back(file);
            continue;
        }
        std::vector<std::string> found;
        if (auto failure = listFolder(file, types, found))
            return failure;
        if (found.empty())
            return hostError(tr("No receiver's file is in this folder or below it"),
                             trFormat("The extensions of such files are: {}", joined(types, ", ")),
                             file);
        std::sort(found.begin(), found.end());
        expanded.insert(expanded.end(), found.begin(), found.end());
    }
    files = std::move(expanded);
    return std::nullopt;
}

std::optional<gps::Error> checkImport(const std::vector<std::string>& files,
                                      const std::vector<std::string>& types)
{
    for (const auto& file : files) {
        if (auto failure = checkFile(file, tr("Name the files in it")))
            return files.size() == 1 ? failure : withNothingImported(*failure);
        if (!isOneOf(fileTypeOf(file), types) && !isMapFile(file))
            return hostError(tr("This file cannot be imported"),
                             trFormat("The extensions of files that can are: {}, gpx, kml, kmz",
                                      joined(types, ", ")),
                             file);
    }
    return files.size() == 1 ? checkSingleImport(files.front()) : std::nullopt;
}

// Of the command line only, so it is not translated.
std::optional<gps::Error> checkSend(const std::vector<std::string>& files,
                                    const std::vector<std::string>& types)
{
    for (const auto& file : files) {
        if (auto failure =
                checkFile(file, "Name the GPX files in it; a device is named with --device"))
            return failure;
        const auto type = fileTypeOf(file);
        const bool isReceivers = isOneOf(type, types);
        if (isReceivers || (isMapFile(file) && type != "gpx"))
            return hostError(
                isReceivers ? "This is a receiver's own file, and send reads GPX files"
                            : "This is a KML file, and send reads GPX files",
                fmt::format("Convert it with \"magellangps import {} -o {}\", and send "
                            "the result",
                            file, fs::path{file}.replace_extension("gpx").string()),
                file);
        if (isEmptyFile(file))
            return hostError("The file is empty", "Export it once more", file);
    }
    return std::nullopt;
}

std::optional<gps::Error> checkInput(const std::string& file)
{
    return checkFile(file, tr("Name a file in it"));
}

} // namespace host
