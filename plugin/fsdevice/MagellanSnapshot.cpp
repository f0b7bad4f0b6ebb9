// SPDX-License-Identifier: MIT
// Reads as a download does, but opens a file only once even where two kinds share a folder. Plans
// with the same functions that a send writes with, so the contents agree byte for byte.

#include "MagellanSnapshot.h"

#include "../common/DataFolders.h"
#include "../common/Errors.h"
#include "../common/FolderWalk.h"
#include "../common/Records.h"
#include "DeviceFileReaders.h"
#include "DeviceFileWriters.h"
#include "DroppedLines.h"
#include "LostFields.h"
#include "SendRemarks.h"

#include <platform/System/Ascii.h>
#include <platform/System/FileManager.h>
#include <platform/System/Log.h>
#include <platform/System/Paths.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <exception>
#include <functional>
#include <optional>
#include <unordered_set>
#include <utility>
#include <vector>

namespace magellan {
namespace {

using Action = gps::PlannedFile::Action;

constexpr std::array kAllKinds{RecordKind::kWaypoints, RecordKind::kGeocaches, RecordKind::kRoutes,
                               RecordKind::kTracks};

bool isMissing(const gps::DeviceFile& file)
{
    return file.error && file.error->code() == gps::FileErrorCode::kReadNoSuchFile;
}

/// @param present  the file as it is; null if it does not exist
/// @param dropped  how many of its lines are not in the content
gps::PlannedFile planFile(RecordKind kind, const std::string& path, gps::SharedText content,
                          const gps::DeviceFile* present, std::size_t dropped)
{
    gps::PlannedFile file{path, Action::kCreate, std::move(content), std::nullopt, nameOf(kind)};
    file.error = gps::FileManager{}.writeObstacle(path);
    if (!file.error && !gps::isAscii(file.content))
        file.error = gps::makeFileError(gps::FileErrorCode::kWriteNotAscii, path);
    if (file.error) {
        file.action = Action::kSkip;
    } else if (present != nullptr) {
        file.action = Action::kMerge;
        file.error = present->error;
        file.droppedLines = dropped;
    }
    return file;
}

/// What records are merged into: nothing if the file is missing or cannot be read.
gps::SharedText textToMergeInto(const gps::DeviceFile* present)
{
    return present != nullptr && !present->error ? present->content : gps::SharedText{};
}

/// Returns the first free path at or after `number`, and advances `number` past it.
std::optional<std::string> nextTrackPath(const std::string& folder, int& number)
{
    while (number < kTrackNumbers) {
        auto path = gps::joinPath(folder, trackFileName(number++));
        if (gps::FileManager{}.isFree(path))
            return path;
    }
    return std::nullopt;
}

const NamedKind& linesOf(RecordKind kind) noexcept
{
    return kind == RecordKind::kGeocaches ? kGeoCacheLines : kWayPointLines;
}

bool isAnyRecord(std::string_view /*key*/, std::string_view /*name*/) noexcept
{
    return true;
}

void visitNamedLines(const NamedLines& lines, const gps::RecordFilter& isChosen,
                     const gps::RecordVisitor& visit)
{
    gps::Dictionary record;
    for (std::size_t index = 0; index < lines.count(); ++index) {
        if (!isChosen("waypoint", lines.nameOf(index)))
            continue;
        record.clear();
        lines.read(index, record);
        visit("waypoint", record);
    }
}

/// The names of the waypoint lines that a route uses. A line can follow the routes that use an
/// earlier one of its name, so the records are compared, too.
std::unordered_set<std::string_view> namesInUse(const gps::Dictionary& waypoints,
                                                const gps::Dictionary& routes)
{
    std::unordered_set<std::string_view> names;
    for (const auto& [routeName, route] : routes) {
        for (const auto& point : pointsOf(*route.as<gps::Dictionary>())) {
            const auto* const name = point.as<gps::Dictionary>()->findString("name");
            const auto* const waypoint = waypoints.find(*name);
            if (waypoint != nullptr && *waypoint == point)
                names.insert(*name);
        }
    }
    return names;
}

/// Empty if a sentence is truncated.
gps::Array routesIn(std::string_view text)
try {
    gps::Dictionary waypoints;
    gps::Dictionary routes;
    collectRoutes(text, waypoints, routes);
    return routes.takeValues();
} catch (const gps::RangeError&) {
    return {};
}

void visitRoutes(std::string_view text, const gps::RecordFilter& isChosen,
                 const gps::RecordVisitor& visit)
{
    for (const auto& element : routesIn(text)) {
        const auto& route = *element.as<gps::Dictionary>();
        const auto* const name = route.findString("name");
        if (isChosen("route", name != nullptr ? *name : std::string_view{}))
            visit("route", route);
    }
}

void visitRoutePoints(std::string_view text,
                      const std::function<void(const gps::GPSPoint& point)>& visit)
{
    for (const auto& route : routesIn(text)) {
        for (const auto& element : pointsOf(*route.as<gps::Dictionary>())) {
            const auto* const record = element.as<gps::Dictionary>();
            if (const auto* const point = record != nullptr ? gps::findPoint(*record) : nullptr)
                visit(*point);
        }
    }
}

gps::Dictionary trackIn(std::string_view text)
try {
    return {{"points", collectTrackPoints(text)}};
} catch (const gps::RangeError&) {
    return {{"points", gps::Array{}}};
}

} // namespace

MagellanSnapshot::MagellanSnapshot(std::string volume, gps::Dictionary folderNames,
                                   std::optional<std::string> identifier,
                                   std::vector<gps::Error> failures)
    : volume_(std::move(volume)), folderNames_(std::move(folderNames)),
      identifier_(std::move(identifier)), failures_(std::move(failures)),
      dataFolders_(existingDataFolders(folderNames_, volume_, failures_))
{
    for (const auto kind : {RecordKind::kWaypoints, RecordKind::kGeocaches, RecordKind::kRoutes}) {
        if (const auto path = dataFolderPath(folderNames_, kind, volume_))
            readFolder(kind, *path);
    }
}

void MagellanSnapshot::readFolder(RecordKind kind, const std::string& path)
{
    auto& folder = folders_.emplace_back(Folder{kind, {}});
    walkFolder(path, [&](const gps::FolderEntry& entry, const std::string& entryPath) {
        if (!entry.isFolder)
            folder.files.push_back(readKindFile(kind, entryPath));
        return true;
    });
    // A folder that cannot be listed may still have a default file, which a send would replace.
    const auto defaultFile = targetOf({kind, {}, path});
    // If it is not known whether that file exists, the attempt to read it shows it.
    if (!fileIndex_.contains(defaultFile) && !gps::FileManager{}.isFree(defaultFile))
        folder.files.push_back(readKindFile(kind, defaultFile));
}

/// Finds the lines of a file, too, since all that follows looks for records by name.
MagellanSnapshot::KindFile MagellanSnapshot::readKindFile(RecordKind kind, const std::string& path)
{
    KindFile file{readFile(path), {}, std::nullopt};
    if (kind == RecordKind::kRoutes || files_[file.index].error)
        return file;
    try {
        file.lines.emplace(linesOf(kind), files_[file.index].content, file.account);
    } catch (const gps::RangeError&) { // then a send merges nothing into the file
    }
    return file;
}

/// Reads a file, unless that was done for another kind. Returns its index in files_.
std::size_t MagellanSnapshot::readFile(const std::string& path)
{
    const auto [known, isNew] = fileIndex_.try_emplace(path, files_.size());
    if (!isNew)
        return known->second;
    gps::DeviceFile file{path, {}, std::nullopt};
    std::string content;
    file.error = gps::FileManager{}.readFile(path, content);
    file.content = std::move(content);
    if (!file.error && !gps::isAscii(file.content))
        file.error = gps::makeFileError(gps::FileErrorCode::kReadNotAscii, path);
    files_.push_back(std::move(file));
    return known->second;
}

/// Returns a file that exists; null for a link that leads nowhere, which a send would replace.
const gps::DeviceFile* MagellanSnapshot::findPresent(const std::string& path) const
{
    const auto found = fileIndex_.find(path);
    return found != fileIndex_.end() && !isMissing(files_[found->second]) ? &files_[found->second]
                                                                          : nullptr;
}

/// Returns a file of a kind whose lines are known.
const MagellanSnapshot::KindFile* MagellanSnapshot::findLines(RecordKind kind,
                                                              const std::string& path) const
{
    for (const auto& folder : folders_) {
        for (const auto& file : folder.files) {
            if (folder.kind == kind && file.lines && files_[file.index].path == path)
                return &file;
        }
    }
    return nullptr;
}

void MagellanSnapshot::visitRecords(const gps::RecordVisitor& visit) const
{
    visitChosenRecords(isAnyRecord, visit);
}

void MagellanSnapshot::visitChosenRecords(const gps::RecordFilter& isChosen,
                                          const gps::RecordVisitor& visit) const
{
    for (const auto& folder : folders_) {
        for (const auto& file : folder.files) {
            if (file.lines)
                visitNamedLines(*file.lines, isChosen, visit);
            else if (folder.kind == RecordKind::kRoutes && !files_[file.index].error)
                visitRoutes(files_[file.index].content, isChosen, visit);
        }
    }
}

void MagellanSnapshot::reportTracks(gps::GPSOutputReceiver& status) const
{
    const auto folder = dataFolderPath(folderNames_, RecordKind::kTracks, volume_);
    if (!folder)
        return;
    (void)walkFolder(*folder, [&](const gps::FolderEntry& entry, const std::string& path) {
        if (entry.isFolder)
            return true;
        try {
            acquireTracks(status, path);
        } catch (const gps::RangeError& damage) {
            gps::logLine(std::string{"Skipped the rest of "}.append(path) + ": " + damage.what());
        }
        return true;
    });
}

gps::SendPlan MagellanSnapshot::planSend(const gps::Dictionary& data) const
{
    gps::SendPlan plan;
    planned_->clear();
    for (const auto& bracket : sendOrder(data, folderNames_, volume_)) {
        for (const auto& job : bracket.jobs)
            planJob(job, plan);
    }
    return plan;
}

void MagellanSnapshot::planJob(const SendJob& job, gps::SendPlan& plan) const
{
    remarkOnRecords(job, plan.remarks);
    if (!job.folder) {
        plan.remarks.emplace_back("The receiver has no folder for records of a kind that is to be "
                                  "sent; they are not written.");
        return;
    }
    countLostFields(job, plan.lostFields);
    if (job.kind == RecordKind::kTracks)
        planTracks(job, plan);
    else
        planMerge(job, plan);
}

void MagellanSnapshot::planTracks(const SendJob& job, gps::SendPlan& plan) const
{
    int number = 0; // lower numbers are taken, by the device or by tracks planned already
    std::size_t planned = 0;
    for (const auto& element : job.records()) {
        const auto* track = element.as<gps::Dictionary>();
        if (track == nullptr)
            continue;
        const auto path = nextTrackPath(*job.folder, number);
        if (!path) {
            const auto left = job.records().size() - planned;
            plan.remarks.push_back("There is no free name for " + std::to_string(left) +
                                   (left == 1 ? " track in " : " tracks in ") + *job.folder + ".");
            return;
        }
        auto made = trackText(*track);
        const gps::SharedText content{std::move(made.text)};
        if (made.isWhole)
            planned_->addTrack(element, content);
        plan.files.push_back(planFile(job.kind, *path, content, nullptr, 0));
        ++planned;
    }
}

void MagellanSnapshot::planMerge(const SendJob& job, gps::SendPlan& plan) const
{
    const auto path = targetOf(job);
    remarkOnLink(path, plan.remarks);
    try {
        if (job.kind == RecordKind::kRoutes)
            planRoutes(job, path, plan);
        else
            planNamed(job, path, plan);
    } catch (const std::exception& failure) {
        plan.files.push_back(
            {path, Action::kSkip, {}, makeThrownError(failure, path), nameOf(job.kind)});
    }
}

void MagellanSnapshot::planNamed(const SendJob& job, const std::string& path,
                                 gps::SendPlan& plan) const
{
    const auto* const present = findPresent(path);
    const auto text = textToMergeInto(present);
    const auto* known = findLines(job.kind, path);
    KindFile other{};
    if (known == nullptr) {
        other.lines.emplace(linesOf(job.kind), text, other.account);
        known = &other;
    }
    auto made = mergedNamedText(job.records(), *known->lines);
    if (!made) {
        plan.files.push_back({path, Action::kSkip, {}, std::nullopt, nameOf(job.kind)});
        plan.remarks.emplace_back("No geocache is written, since one of them has no position.");
        return;
    }
    const gps::SharedText content{std::move(made->text)};
    if (made->isWhole) // what is not is made again, because that logs the records that are missing
        planned_->add(job.kind, job.list, text, {content, known->account});
    remarkOnFile(job.kind, path, content, plan.remarks);
    plan.files.push_back(planFile(job.kind, path, content, present, droppedLines(known->account)));
}

void MagellanSnapshot::planRoutes(const SendJob& job, const std::string& path,
                                  gps::SendPlan& plan) const
{
    const auto* const present = findPresent(path);
    const auto text = textToMergeInto(present);
    std::vector<RenamedPoint> renamed;
    auto content = mergedRouteText(job.records(), text, nullptr, &renamed);
    remarkOnRenamedPoints(renamed, plan.remarks);
    plan.files.push_back(
        planFile(job.kind, path, std::move(content), present, droppedRouteLines(text)));
}

void visitRecordsInFile(std::string_view path, std::string_view text,
                        const gps::RecordVisitor& visit)
{
    const auto extension = gps::pathExtension(path);
    if (extension == "log")
        return visit("track", trackIn(text));
    if (extension == "rte")
        return visitRoutes(text, isAnyRecord, visit);
    const auto visitWaypoint = [&visit](const gps::Dictionary& record) {
        visit("waypoint", record);
    };
    try {
        if (extension == "upt")
            visitWayPoints(text, visitWaypoint);
        else if (extension == "gs")
            visitGeoCaches(text, visitWaypoint);
    } catch (const gps::RangeError&) { // the records before a truncated sentence were visited
    }
}

void visitPointsInFile(std::string_view path, std::string_view text, const gps::PointVisitor& visit)
{
    const auto visitAs = [&visit](std::string_view key) {
        return [&visit, key](const gps::GPSPoint& point) { visit(key, point); };
    };
    const auto extension = gps::pathExtension(path);
    if (extension == "rte")
        return visitRoutePoints(text, visitAs("route"));
    try {
        if (extension == "log")
            visitTrackPoints(text, visitAs("track"));
        else if (extension == "upt")
            visitPointsOf(kWayPointLines, text, visitAs("waypoint"));
        else if (extension == "gs")
            visitPointsOf(kGeoCacheLines, text, visitAs("waypoint"));
    } catch (const gps::RangeError&) { // the points before a truncated sentence were visited
    }
}

void visitUnusedRoutePointsInFile(std::string_view path, std::string_view text,
                                  const std::function<void(const gps::Dictionary& record)>& visit)
{
    if (gps::pathExtension(path) != "rte")
        return;
    gps::Dictionary waypoints;
    gps::Dictionary routes;
    try {
        collectRoutes(text, waypoints, routes);
    } catch (const gps::RangeError&) { // then a send merges nothing into the file
        return;
    }
    const auto used = namesInUse(waypoints, routes);
    for (const auto& [name, waypoint] : waypoints) {
        if (!used.contains(name))
            visit(*waypoint.as<gps::Dictionary>());
    }
}

std::vector<std::string> existingDataFolders(const gps::Dictionary& folders,
                                             const std::string& volume,
                                             std::vector<gps::Error>& failures)
{
    std::vector<std::string> paths;
    for (const auto kind : kAllKinds) {
        auto path = dataFolderPath(folders, kind, volume);
        if (!path || std::find(paths.begin(), paths.end(), *path) != paths.end())
            continue;
        bool isFolder = false;
        if (auto failure = gps::FileManager{}.lookUpFolder(*path, isFolder))
            failures.push_back(std::move(*failure));
        if (isFolder)
            paths.push_back(std::move(*path));
    }
    return paths;
}

} // namespace magellan
