// SPDX-License-Identifier: MIT
// What the driver tells a host before a send: where its data lies, what its texts can hold, and
// what would be written.

#include "../codec/FieldText.h"
#include "../common/Errors.h"
#include "../common/FolderWalk.h"
#include "DeviceFileWriters.h"
#include "KeyValueFile.h"
#include "MagellanGPSPlugin.h"
#include "SendOrder.h"
#include "SendRemarks.h"

#include <platform/System/Ascii.h>
#include <platform/System/FileManager.h>

#include <algorithm>
#include <array>
#include <exception>
#include <utility>

namespace magellan {
namespace {

using Fate = gps::PlannedFile::Fate;

constexpr std::array<std::string_view, 4> kFolderKeys{"MyPOIs", "Geocaches", "Routes", "TrackLogs"};

bool isFolder(const std::string& path)
{
    bool folder = false;
    return gps::FileManager{}.fileExists(path, &folder) && folder;
}

gps::PlannedFile planFile(const std::string& path, std::string content)
{
    gps::PlannedFile file{path, Fate::kMade, std::move(content), std::nullopt};
    file.error = gps::FileManager{}.writeObstacle(path);
    if (!file.error && !gps::isAscii(file.content))
        file.error = gps::makeFileError(gps::FileErrorCode::kWriteNotAscii, path);
    if (file.error) {
        file.fate = Fate::kLeft;
        return file;
    }
    std::string present;
    if (gps::FileManager{}.fileExists(path)) {
        file.fate = Fate::kMerged;
        file.error = gps::FileManager{}.readAsciiFile(path, present);
    }
    return file;
}

/// The first free path from a number on, which is moved behind it.
std::optional<std::string> nextTrackPath(const std::string& folder, int& number)
{
    while (number < kTrackNumbers) {
        auto path = gps::joinPath(folder, trackFileName(number++));
        if (!gps::FileManager{}.fileExists(path))
            return path;
    }
    return std::nullopt;
}

void planTracks(const SendJob& job, gps::SendPlan& plan)
{
    int number = 0; // below it all are taken, by the device or by the tracks before
    std::size_t placed = 0;
    for (const auto& element : job.records) {
        const auto* track = element.as<gps::Dictionary>();
        if (track == nullptr)
            continue;
        const auto path = nextTrackPath(*job.folder, number);
        if (!path) {
            const auto left = job.records.size() - placed;
            plan.remarks.push_back("There is no free name for " + std::to_string(left) +
                                   (left == 1 ? " track in " : " tracks in ") + *job.folder + ".");
            return;
        }
        plan.files.push_back(planFile(*path, trackText(*track)));
        ++placed;
    }
}

std::optional<std::string> mergedText(const SendJob& job, const std::string& path)
{
    if (job.kind == SendKind::kWaypoints)
        return mergedWaypointText(job.records, path);
    if (job.kind == SendKind::kGeocaches)
        return mergedGeocacheText(job.records, path);
    return mergedRouteText(job.records, path);
}

void planMerge(const SendJob& job, gps::SendPlan& plan)
{
    const auto path = targetOf(job);
    try {
        auto content = mergedText(job, path);
        if (!content) {
            plan.files.push_back({path, Fate::kLeft, {}, std::nullopt});
            plan.remarks.emplace_back("No geocache is written, since one of them has no place.");
            return;
        }
        remarkOnFile(job.kind, path, *content, plan.remarks);
        plan.files.push_back(planFile(path, std::move(*content)));
    } catch (const std::exception& failure) {
        plan.files.push_back({path, Fate::kLeft, {}, makeThrownError(failure, path)});
    }
}

void planJob(const SendJob& job, gps::SendPlan& plan)
{
    remarkOnRecords(job, plan.remarks);
    if (!job.folder)
        plan.remarks.emplace_back("The receiver has no folder for records of a kind that is to be "
                                  "sent; they are not written.");
    else if (job.kind == SendKind::kTracks)
        planTracks(job, plan);
    else
        planMerge(job, plan);
}

} // namespace

std::optional<std::string> MagellanGPSPlugin::deviceIdentifier() const
{
    const auto* const volume = location();
    gps::Dictionary unit;
    if (volume == nullptr || readMagellanUnitIDFromPath(*volume, unit))
        return std::nullopt;
    const auto* serialNumber = unit.findString("Serial Number");
    return serialNumber != nullptr ? std::optional{*serialNumber} : std::nullopt;
}

std::vector<std::string> MagellanGPSPlugin::dataFolders() const
{
    std::vector<std::string> paths;
    const auto* const volume = location();
    const auto folders =
        volume != nullptr ? readMagellanFolderDictionaryFromPath(*volume) : std::nullopt;
    if (!folders)
        return paths;
    for (const auto key : kFolderKeys) {
        auto path = dataFolderPath(*folders, key, *volume);
        if (path && isFolder(*path) && std::find(paths.begin(), paths.end(), *path) == paths.end())
            paths.push_back(std::move(*path));
    }
    return paths;
}

std::string MagellanGPSPlugin::deviceCharacters() const
{
    return kDeviceCharacters;
}

std::size_t MagellanGPSPlugin::longestName() const
{
    return kLongestName;
}

gps::SendPlan MagellanGPSPlugin::planSend(const gps::Dictionary& data) const
{
    gps::SendPlan plan;
    const auto* const volume = location();
    const auto folders =
        volume != nullptr ? readMagellanFolderDictionaryFromPath(*volume) : std::nullopt;
    if (!folders)
        return plan;
    for (const auto& bracket : sendOrder(data, *folders, *volume)) {
        for (const auto& job : bracket.jobs)
            planJob(job, plan);
    }
    return plan;
}

} // namespace magellan
