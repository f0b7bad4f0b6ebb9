// SPDX-License-Identifier: MIT
// The file has a title line, one line for each key, and a last line with the hash of everything
// before it, so that any damage is noticed.

#include "host/watching/KnownRecords.h"

#include "host/base/HostError.h"
#include "host/base/JsonText.h"
#include "host/base/TranslatedFormat.h"
#include "host/files/Files.h"
#include "host/files/Hash.h"
#include "host/files/StateFolder.h"

#include <gps/GPSFileDevice.h>
#include <platform/System/FileManager.h>

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <utility>

namespace host {
namespace {

constexpr std::string_view kTitle = "magellangps saved records 1\n";
constexpr std::string_view kSum = "sum ";
constexpr std::string_view kTrackKey = "track ";

// Ends in a space, so that one time does not match a longer one that begins with the same digits.
std::string trackPrefix(std::int64_t firstTime)
{
    return fmt::format("{}{} ", kTrackKey, firstTime);
}

// The key of a track without its last part; empty for any other key.
std::string_view withoutContent(std::string_view key)
{
    return key.starts_with(kTrackKey) ? key.substr(0, key.rfind(' ')) : std::string_view{};
}

bool readKeys(std::string_view text, RecordKeys& keys)
{
    const auto body = text.substr(0, text.rfind(kSum));
    if (!body.starts_with(kTitle) ||
        text.substr(body.size()) != fmt::format("{}{}\n", kSum, hashOf(body)))
        return false;
    for (auto lines = body.substr(kTitle.size()); !lines.empty();) {
        const auto end = std::min(lines.find('\n'), lines.size() - 1);
        keys.emplace(lines.substr(0, end));
        lines.remove_prefix(end + 1);
    }
    return true;
}

gps::Error unreadableListError(const std::string& path, const gps::Error& failure)
{
    const auto* const reason = failure.userInfo().findString(gps::kErrorReasonKey);
    return hostError(trFormat("The list of saved records cannot be read{}, so every record "
                              "counts as new",
                              reason != nullptr ? " (" + *reason + ')' : ""),
                     tr("The list is not changed; check its permissions and its disk"), path);
}

} // namespace

std::string identifierOf(const gps::GPSPlugInProtocol& driver, const std::string& location)
{
    const auto* const files = dynamic_cast<const gps::GPSFileDevice*>(&driver);
    const auto serialNumber = files != nullptr ? files->deviceIdentifier() : std::nullopt;
    return serialNumber.value_or(std::filesystem::path{location}.filename().string());
}

// The folder's name is older than the other commands that use the lists.
std::optional<std::string> knownRecordsFolder()
{
    const auto state = stateFolder();
    return state ? std::optional{(std::filesystem::path{*state} / "watch").string()} : std::nullopt;
}

std::string knownRecordsFile(const std::string& folder, const std::string& identifier)
{
    return (std::filesystem::path{folder} / (nameOfDevice(identifier) + ".txt")).string();
}

std::string wayPointKey(const gps::GPSPoint& point, const gps::Dictionary& record)
{
    Digest content;
    content.add(point);
    content.add(record);
    return "waypoint " + content.text();
}

std::string routeKey(const Digest& content)
{
    return "route " + content.text();
}

std::string trackKey(std::int64_t firstTime, std::size_t points, const Digest& content)
{
    const auto key = fmt::format("{}{}", trackPrefix(firstTime), points);
    return content.text().empty() ? key : fmt::format("{} {}", key, content.text());
}

void Digest::add(const gps::Dictionary& record)
{
    std::string json;
    appendJson(json, record);
    add(json);
}

void Digest::add(const gps::GPSPoint& point)
{
    std::string json;
    appendJson(json, point);
    add(json);
}

// Each step hashes the digest so far together with the new piece, so the order counts and the
// memory does not grow.
void Digest::add(const std::string& json)
{
    text_ = hashOf(text_ + json);
}

KnownRecords::KnownRecords(std::string path, gps::FileSystem& files)
    : files_(files), path_(std::move(path))
{}

std::optional<gps::Error> KnownRecords::load()
{
    keys_.clear();
    std::string text;
    const auto failure = gps::FileManager{&files_}.readFile(path_, text);
    isUnreadable_ = failure && failure->code() != gps::FileErrorCode::kReadNoSuchFile;
    if (isUnreadable_)
        return unreadableListError(path_, *failure);
    if (failure || readKeys(text, keys_))
        return std::nullopt;
    return moveDamagedFile();
}

gps::Error KnownRecords::moveDamagedFile() const
{
    // Replaces the list that was found damaged before, if there was one.
    const auto damaged = path_ + ".damaged";
    const bool isMoved = files_.rename(path_.c_str(), damaged.c_str()) == 0;
    return hostError(tr("The list of saved records is damaged, so every record counts as new"),
                     isMoved ? tr("The damaged list is kept under another name") : "",
                     isMoved ? damaged : path_);
}

// The keys are sorted, so those of one first time are neighbours. Logarithmic: called for each
// track.
bool KnownRecords::hasTrackFrom(std::int64_t firstTime) const
{
    const auto prefix = trackPrefix(firstTime);
    const auto next = keys_.lower_bound(prefix);
    return next != keys_.end() && next->starts_with(prefix);
}

// Nothing is locked: of two processes that watch for the same receiver, the last one to write wins.
std::optional<gps::Error> KnownRecords::add(const RecordKeys& keys)
{
    if (isUnreadable_)
        return std::nullopt;
    for (const auto& key : keys) {
        if (const auto older = keys_.find(withoutContent(key)); older != keys_.end())
            keys_.erase(older);
        keys_.insert(key);
    }
    std::string text{kTitle};
    for (const auto& key : keys_)
        text.append(key).push_back('\n');
    text += fmt::format("{}{}\n", kSum, hashOf(text));
    return writeFile(path_, text, files_);
}

} // namespace host
