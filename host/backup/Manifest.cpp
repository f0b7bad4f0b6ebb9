// SPDX-License-Identifier: MIT
// A file name can be any bytes, but a JSON string cannot. Bytes other than plain ASCII are stored
// as "%" and two hexadecimal digits. A manifest may be damaged or forged, so every member is
// checked before any is used.

#include "host/backup/Manifest.h"

#include "host/base/FrontEnd.h"
#include "host/base/HostError.h"
#include "host/base/JsonText.h"
#include "host/base/Text.h"
#include "host/base/Translation.h"
#include "host/files/Files.h"
#include "host/files/Hash.h"
#include "host/files/TemporaryName.h"

#include <gps/NumberText.h>
#include <gps/Value.h>
#include <platform/System/FileManager.h>
#include <platform/System/Paths.h>

#include <nlohmann/json.hpp>

#include <cerrno>
#include <utility>

#include <sys/stat.h>

namespace host {
namespace {

// Objects of this type are sorted maps, so that a million keys are read fast.
using SortedJson = nlohmann::json;

constexpr std::size_t kLongestPath = 4095; // bytes; the longest that the system allows
constexpr int kDeepestMember = 3;          // a file's members; whatever is deeper is dropped

gps::Error notABackup(const std::string& folder)
{
    return hostError(
        tr("This folder is not a complete backup: its list of files, manifest.json, is "
           "missing or damaged"),
        advice("Choose one of those that \"magellangps restore\" lists, or copy what you "
               "need from its folder \"files\"",
               tr("Choose one of those that are listed, or copy what you need from "
                  "its folder \"files\"")),
        folder);
}

// A failed look-up is not proof that the manifest is missing.
bool mayBeIntact(const std::string& path, gps::FileSystem& files)
{
    struct stat status;
    if (files.stat(path.c_str(), &status) != 0)
        return errno != ENOENT && errno != ENOTDIR;
    return S_ISREG(status.st_mode) && static_cast<std::size_t>(status.st_size) <= kLargestManifest;
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
        const unsigned byte = static_cast<unsigned char>(c);
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

// The member of an object; null if it is missing, or if this is not an object.
const SortedJson* memberOf(const SortedJson& object, const char* key)
{
    const auto found = object.find(key);
    return found != object.end() ? &*found : nullptr;
}

const std::string* stringOf(const SortedJson* value)
{
    return value != nullptr ? value->get_ptr<const std::string*>() : nullptr;
}

std::optional<std::string> safePathOf(const std::string* encodedPath)
{
    if (encodedPath == nullptr)
        return std::nullopt;
    auto path = decoded(*encodedPath);
    return path.size() <= kLongestPath && staysBelow(path) ? std::optional{std::move(path)}
                                                           : std::nullopt;
}

std::optional<BackedUpFile> fileOf(const SortedJson& json)
{
    auto path = safePathOf(stringOf(memberOf(json, "path")));
    const auto* const size = memberOf(json, "size");
    const auto* const hash = stringOf(memberOf(json, "hash"));
    if (!path || size == nullptr || !size->is_number_unsigned() || hash == nullptr ||
        !isHash(*hash))
        return std::nullopt;
    const auto bytes = size->get<std::uint64_t>();
    if (bytes > gps::kLargestFile)
        return std::nullopt;
    return BackedUpFile{std::move(*path), bytes, *hash};
}

// @param text  out: unchanged if the member is missing
// @return      whether it is missing, or a text of an acceptable length without a NUL byte
bool readText(const SortedJson& json, const char* key, std::string& text)
{
    const auto* const member = memberOf(json, key);
    if (member == nullptr)
        return true;
    const auto* const value = stringOf(member);
    if (value == nullptr || value->size() > kLongestPath || value->find('\0') != std::string::npos)
        return false;
    text = *value;
    return true;
}

bool readNotes(const SortedJson& json, Manifest& manifest)
{
    std::string identifier;
    if (!readText(json, "device", manifest.device) || !readText(json, "day", manifest.day) ||
        !readText(json, "identifier", identifier))
        return false;
    if (memberOf(json, "identifier") != nullptr)
        manifest.identifier = decoded(identifier);
    return true;
}

bool readFolders(const SortedJson& json, Manifest& manifest)
{
    const auto* const folders = memberOf(json, "folders");
    if (folders == nullptr || !folders->is_array())
        return false;
    for (const auto& folder : *folders) {
        auto path = safePathOf(stringOf(&folder));
        if (!path)
            return false;
        manifest.folders.push_back(std::move(*path));
    }
    return true;
}

bool readFiles(const SortedJson& json, Manifest& manifest)
{
    const auto* const files = memberOf(json, "files");
    if (files == nullptr || !files->is_array())
        return false;
    for (const auto& element : *files) {
        auto file = fileOf(element);
        if (!file)
            return false;
        if (!isTemporaryName(gps::lastComponent(file->path)))
            manifest.files.push_back(std::move(*file));
    }
    return true;
}

bool readSequence(const SortedJson& json, const char* key, std::uint64_t& sequence)
{
    const auto* const member = memberOf(json, key);
    if (member == nullptr)
        return true;
    if (!member->is_number_unsigned())
        return false;
    sequence = member->get<std::uint64_t>();
    return sequence <= kLargestSequence;
}

SortedJson parseManifest(const std::string& text)
{
    const auto isShallow = [](int depth, SortedJson::parse_event_t, const SortedJson&) {
        return depth <= kDeepestMember;
    };
    return SortedJson::parse(text.begin(), text.end(), isShallow, false);
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
    gps::Dictionary members{{"device", manifest.device},
                            {"folders", std::move(folders)},
                            {"files", std::move(files)},
                            {"sequence", static_cast<std::int64_t>(manifest.sequence)}};
    if (manifest.firstSequence != 0)
        members.set("firstSequence", static_cast<std::int64_t>(manifest.firstSequence));
    if (!manifest.day.empty())
        members.set("day", manifest.day);
    if (manifest.identifier)
        members.set("identifier", encoded(*manifest.identifier));
    std::string text;
    appendJson(text, members);
    return text + '\n';
}

gps::Error noBackupPossible(std::string why, const std::string& path)
{
    return hostError(std::move(why),
                     advice("Keep a copy yourself, and send with --no-backup",
                            tr("Keep a copy yourself, and send without a backup")),
                     path);
}

std::optional<gps::Error> writeManifest(const std::string& folder, const Manifest& manifest,
                                        gps::FileSystem& files)
{
    const auto text = manifestText(manifest);
    if (text.size() > kLargestManifest)
        return noBackupPossible(tr("The device has too many files for a backup"), manifest.device);
    return writeFile(gps::joinPath(folder, kManifestName), text, files);
}

bool mayBeReadLater(const gps::Error& failure)
{
    return failure.domain() != kHostErrorDomain;
}

std::optional<gps::Error> readManifest(const std::string& folder, Manifest& manifest,
                                       gps::FileSystem& files)
{
    std::string text;
    const auto path = gps::joinPath(folder, kManifestName);
    if (auto failure = gps::FileManager{&files}.readFile(path, text, kLargestManifest))
        return mayBeIntact(path, files) ? failure : notABackup(folder);
    const auto json = parseManifest(text);
    Manifest read;
    if (!readNotes(json, read) || !readFolders(json, read) || !readFiles(json, read) ||
        !readSequence(json, "sequence", read.sequence) ||
        !readSequence(json, "firstSequence", read.firstSequence))
        return notABackup(folder);
    manifest = std::move(read);
    return std::nullopt;
}

} // namespace host
