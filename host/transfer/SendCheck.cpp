// SPDX-License-Identifier: MIT
// A worker logs its failures and goes on. It also logs a read error for each default file that does
// not exist yet, because it reads every file before it merges into it. That is not a failure.

#include "host/transfer/SendCheck.h"

#include "host/base/JsonText.h"
#include "host/files/Files.h"
#include "host/fitting/RecordList.h"

#include <gps/Geocache.h>
#include <platform/System/FileManager.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace host {
namespace {

using Action = gps::PlannedFile::Action;
using Result = SentFile::Result;

constexpr std::array<std::pair<std::string_view, gps::TransferKind>, 3> kKeys{
    {{"track", gps::TransferKind::kTracks},
     {"waypoint", gps::TransferKind::kWaypoints},
     {"route", gps::TransferKind::kRoutes}}};

Result resultOfSkipped(const gps::PlannedFile& file)
{
    return file.error ? Result::kBlocked : Result::kNothingToWrite;
}

Result resultOf(const gps::PlannedFile& file)
{
    if (file.action == Action::kSkip)
        return resultOfSkipped(file);
    std::string present;
    if (const auto failure = gps::FileManager{}.readFile(file.path, present))
        return failure->code() == gps::FileErrorCode::kReadNoSuchFile ? Result::kMissing
                                                                      : Result::kUnreadable;
    return present == file.content ? Result::kWritten : Result::kDifferent;
}

// @param folders  that existed before
bool isInGoneFolder(const std::string& path, const std::vector<std::string>& folders)
{
    const auto parent = std::filesystem::path{path}.parent_path().string();
    bool isFolder = false;
    return std::find(folders.begin(), folders.end(), parent) != folders.end() &&
           !(gps::FileManager{}.fileExists(parent, &isFolder) && isFolder);
}

using RecordName = std::pair<std::string_view, std::string>; // with the kind

// Visits the names under which a file's content has records: waypoints, routes and route points.
template <typename Visitor> void forEachName(const gps::PlannedFile& planned,
                                             std::string_view content,
                                             const gps::GPSFileDevice& device, const Visitor& visit)
{
    const auto visitName = [&visit](std::string_view kind, const gps::Dictionary& record) {
        if (const auto* const name = record.findString("name"))
            visit(RecordName{kind, *name});
    };
    const auto visitNames = [&](std::string_view key, const gps::Dictionary& record) {
        const bool isRoute = key == "route"; // the key is valid for the call only
        visitName(isRoute ? "route" : "waypoint", record);
        if (isRoute)
            forEachRecord(record, "points",
                          [&](const gps::Dictionary& point) { visitName("point", point); });
    };
    device.visitRecordsIn(planned.path, content, visitNames);
}

// How many records both an older and a planned content have, but the present one does not.
std::size_t lostRecords(std::string_view before, std::string_view present,
                        const gps::PlannedFile& planned, const gps::GPSFileDevice& device)
{
    std::set<RecordName> missing;
    forEachName(planned, planned.content, device,
                [&](RecordName name) { missing.insert(std::move(name)); });
    forEachName(planned, present, device, [&](const RecordName& name) { missing.erase(name); });
    std::size_t lost = 0;
    forEachName(planned, before, device,
                [&](const RecordName& name) { lost += missing.erase(name); });
    return lost;
}

// A record as a text to compare. Routes are numbered anew by each merge.
std::string textOf(std::string_view key, const gps::Dictionary& record)
{
    auto content = record;
    if (key == "route")
        content.remove("number");
    std::string text{key};
    appendJson(text, content);
    return text;
}

} // namespace

bool holdsPlannedRecords(const gps::PlannedFile& planned, const gps::GPSFileDevice& device)
{
    std::string present;
    if (gps::FileManager{}.readFile(planned.path, present))
        return false;
    std::unordered_set<std::string> found;
    device.visitRecordsIn(planned.path, present, [&](std::string_view key, const auto& record) {
        found.insert(textOf(key, record));
    });
    bool isMissing = false;
    device.visitRecordsIn(planned.path, planned.content,
                          [&](std::string_view key, const auto& record) {
                              isMissing = isMissing || !found.contains(textOf(key, record));
                          });
    return !isMissing;
}

void putBackIfLost(const gps::DeviceFile& before, const gps::PlannedFile& planned,
                   const gps::GPSFileDevice& device, SentFile& file)
{
    // A file that could not be decoded had no records that the plan could keep.
    if (before.error || (file.result != Result::kDifferent && file.result != Result::kMissing))
        return;
    std::string present;
    if (gps::FileManager{}.readFile(planned.path, present) && file.result != Result::kMissing)
        return;
    file.lostRecords = lostRecords(before.content, present, planned, device);
    if (file.lostRecords == 0)
        return;
    file.writeError = writeFile(planned.path, before.content);
    file.result = file.writeError ? Result::kLost : Result::kPutBack;
}

bool isAsBefore(const SentFile& file, const gps::DeviceFile* before)
{
    std::string present;
    switch (file.result) {
    case Result::kPutBack:
    case Result::kBlocked:
    case Result::kNothingToWrite:
        return true;
    case Result::kMissing:
        return before == nullptr;
    case Result::kDifferent:
        return before != nullptr && !gps::FileManager{}.readFile(file.path, present) &&
               present == before->content;
    case Result::kWritten:
    case Result::kRenamed:
    case Result::kAlsoChanged:
    case Result::kUnreadable:
    case Result::kLost:
        break;
    }
    return false;
}

std::optional<gps::Dictionary> withoutBlocked(const gps::Dictionary& data,
                                              const gps::SendPlan& plan)
{
    std::set<std::string_view> blocked; // kinds
    for (const auto& file : plan.files) {
        if (file.action == Action::kSkip && file.error)
            blocked.insert(file.kind);
    }
    if (blocked.empty())
        return std::nullopt;
    // A second copy of all records, which only a blocked file costs.
    auto rest = data;
    removeKinds(rest, blocked);
    return rest;
}

void removeKinds(gps::Dictionary& data, const std::set<std::string_view>& kinds)
{
    if (kinds.contains("tracks"))
        data.remove("track");
    if (kinds.contains("routes"))
        data.remove("route");
    auto* const waypoints = data.findArray("waypoint");
    if (waypoints == nullptr)
        return;
    std::erase_if(*waypoints, [&](const gps::Value& element) {
        const auto* const record = element.as<gps::Dictionary>();
        const bool isGeocache = record != nullptr && gps::isGeocache(*record);
        return kinds.contains(isGeocache ? "geocaches" : "waypoints");
    });
    if (waypoints->empty())
        data.remove("waypoint");
}

std::vector<gps::TransferKind> kindsIn(const gps::Dictionary& data)
{
    std::vector<gps::TransferKind> kinds;
    for (const auto& [key, kind] : kKeys) {
        if (data.findArray(key) != nullptr)
            kinds.push_back(kind);
    }
    return kinds;
}

std::vector<SentFile> checkFiles(const gps::SendPlan& plan, const std::vector<std::string>& folders)
{
    std::vector<SentFile> files;
    for (const auto& file : plan.files) {
        auto result = resultOf(file);
        if (result == Result::kMissing && isInGoneFolder(file.path, folders))
            result = Result::kUnreadable;
        files.push_back({file.path, result});
    }
    return files;
}

std::vector<SentFile> unknownFiles(const gps::SendPlan& plan)
{
    std::vector<SentFile> files;
    for (const auto& file : plan.files)
        files.push_back({file.path, file.action == Action::kSkip ? resultOfSkipped(file)
                                                                 : Result::kUnreadable});
    return files;
}

bool isExpected(const gps::Error& logged, const gps::SendPlan& plan)
{
    const auto* const cause = logged.userInfo().findDictionary(gps::kErrorUnderlyingKey);
    const auto* const code = cause != nullptr ? cause->find("code") : nullptr;
    if (code == nullptr)
        return false;
    const auto isExpectedOf = [&](const gps::PlannedFile& file) {
        if (file.path != logged.path())
            return false;
        if (file.action == Action::kCreate)
            return code->int32Reading() == gps::FileErrorCode::kReadNoSuchFile;
        return file.action == Action::kMerge && file.error &&
               code->int32Reading() == file.error->code();
    };
    return std::any_of(plan.files.begin(), plan.files.end(), isExpectedOf);
}

} // namespace host
