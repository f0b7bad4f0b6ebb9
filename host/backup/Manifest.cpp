// SPDX-License-Identifier: MIT
// A file name can be any bytes, but a JSON string cannot. Bytes other than plain ASCII are stored
// as
// "%" and two hexadecimal digits.

#include "host/backup/Manifest.h"

#include "host/base/HostError.h"
#include "host/base/JsonText.h"
#include "host/base/Text.h"
#include "host/files/TemporaryName.h"

#include <gps/NumberText.h>
#include <gps/Value.h>
#include <platform/System/FileManager.h>
#include <platform/System/Paths.h>

#include <utility>

namespace host {
namespace {

gps::Error notABackup(const std::string& folder)
{
    return hostError("This folder is not a complete backup",
                     "Choose one of those that \"magellangps restore\" lists", folder);
}

// A backup is written with relative paths. Any other manifest is damaged or forged.
bool staysBelow(const std::string& path)
{
    return !path.starts_with('/') && gps::staysInside(path);
}

bool isPlain(char c) noexcept
{
    return c >= ' ' && c <= '~' && c != '%';
}

std::string encoded(std::string_view path)
{
    std::string text;
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (isPlain(c))
            text += c;
        else
            text.append({'%', kHexDigits[byte >> 4], kHexDigits[byte & 15]});
    }
    return text;
}

std::string decoded(std::string_view text)
{
    std::string path;
    while (!text.empty()) {
        const auto byte = text.front() == '%' && text.size() >= 3
                              ? gps::hexInteger(text.substr(1, 2))
                              : std::nullopt;
        path += byte ? static_cast<char>(*byte) : text.front();
        text.remove_prefix(byte ? 3 : 1);
    }
    return path;
}

bool readFolders(const gps::Dictionary& json, Manifest& manifest)
{
    const auto* const folders = json.findArray("folders");
    if (folders == nullptr)
        return false;
    for (const auto& folder : *folders) {
        const auto* const path = folder.as<std::string>();
        if (path == nullptr || !staysBelow(decoded(*path)))
            return false;
        manifest.folders.push_back(decoded(*path));
    }
    return true;
}

bool readFiles(const gps::Dictionary& json, Manifest& manifest)
{
    const auto* const files = json.findArray("files");
    if (files == nullptr)
        return false;
    for (const auto& element : *files) {
        const auto* const file = element.as<gps::Dictionary>();
        const auto* const path = file != nullptr ? file->findString("path") : nullptr;
        const auto* const size = file != nullptr ? file->find("size") : nullptr;
        const auto* const bytes = size != nullptr ? size->as<gps::Number>() : nullptr;
        const auto* const hash = file != nullptr ? file->findString("hash") : nullptr;
        if (path == nullptr || bytes == nullptr || hash == nullptr || !staysBelow(decoded(*path)))
            return false;
        if (isTemporaryName(gps::lastComponent(decoded(*path))))
            continue;
        manifest.files.push_back(
            {decoded(*path), static_cast<std::uint64_t>(bytes->int64Value()), *hash});
    }
    return true;
}

} // namespace

std::string manifestText(const Manifest& manifest)
{
    gps::Array folders;
    for (const auto& folder : manifest.folders)
        folders.emplace_back(encoded(folder));
    gps::Array files;
    for (const auto& file : manifest.files)
        files.emplace_back(gps::Dictionary{{"path", encoded(file.path)},
                                           {"size", static_cast<std::int64_t>(file.size)},
                                           {"hash", file.hash}});
    std::string text;
    appendJson(text, gps::Dictionary{{"device", manifest.device},
                                     {"folders", std::move(folders)},
                                     {"files", std::move(files)}});
    return text + '\n';
}

std::optional<gps::Error> readManifest(const std::string& folder, Manifest& manifest,
                                       gps::FileSystem& files)
{
    std::string text;
    if (gps::FileManager{&files}.readFile(gps::joinPath(folder, kManifestName), text))
        return notABackup(folder);
    const auto json = readJsonObject(text);
    Manifest read;
    if (!json || !readFolders(*json, read) || !readFiles(*json, read))
        return notABackup(folder);
    if (const auto* const device = json->findString("device"))
        read.device = *device;
    manifest = std::move(read);
    return std::nullopt;
}

} // namespace host
