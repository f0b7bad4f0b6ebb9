// SPDX-License-Identifier: MIT
// The file: a title line, a line a key, and a last line with the hash of all before it.

#include "host/watching/KnownRecords.h"

#include "host/base/HostError.h"
#include "host/base/JsonText.h"
#include "host/files/Files.h"
#include "host/files/Hash.h"

#include <platform/System/FileManager.h>

#include <algorithm>
#include <utility>

namespace host {
namespace {

constexpr std::string_view kTitle = "magellangps saved records 1\n";
constexpr std::string_view kSum = "sum ";
constexpr auto kNoSuchFile = static_cast<std::int32_t>(gps::FileErrorCode::kReadNoSuchFile);

std::string trackPrefix(std::int64_t firstTime)
{
    return "track " + std::to_string(firstTime) + ' ';
}

bool takeKeys(std::string_view text, RecordKeys& keys)
{
    const auto body = text.substr(0, text.rfind(kSum));
    if (!body.starts_with(kTitle) ||
        text.substr(body.size()) != std::string{kSum} + hashOf(body) + '\n')
        return false;
    for (auto lines = body.substr(kTitle.size()); !lines.empty();) {
        const auto end = std::min(lines.find('\n'), lines.size() - 1);
        keys.emplace(lines.substr(0, end));
        lines.remove_prefix(end + 1);
    }
    return true;
}

} // namespace

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
    auto key = trackPrefix(firstTime) + std::to_string(points);
    return content.text().empty() ? key : key + ' ' + content.text();
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
    if (failure && failure->code() == kNoSuchFile)
        return std::nullopt;
    if (failure || !takeKeys(text, keys_))
        return putAside();
    return std::nullopt;
}

gps::Error KnownRecords::putAside() const
{
    const auto aside = path_ + ".damaged";
    const bool isAside = files_.rename(path_.c_str(), aside.c_str()) == 0;
    return hostError(
        "The list of what was saved before cannot be read, so everything counts as new",
        isAside ? "The damaged list was put aside" : "", isAside ? aside : path_);
}

bool KnownRecords::hasTrackFrom(std::int64_t firstTime) const
{
    const auto prefix = trackPrefix(firstTime);
    const auto next = keys_.lower_bound(prefix);
    return next != keys_.end() && next->starts_with(prefix);
}

std::optional<gps::Error> KnownRecords::add(const RecordKeys& keys)
{
    keys_.insert(keys.begin(), keys.end());
    std::string text{kTitle};
    for (const auto& key : keys_)
        text.append(key).push_back('\n');
    text += std::string{kSum} + hashOf(text) + '\n';
    return writeFile(path_, text, files_);
}

} // namespace host
