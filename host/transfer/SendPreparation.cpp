// SPDX-License-Identifier: MIT
// The device is read once, into a snapshot. Fitting, planning and the backup all work from it.

#include "host/transfer/SendPreparation.h"

#include "host/base/HostError.h"
#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"
#include "host/fitting/Altitudes.h"
#include "host/fitting/ExactNames.h"
#include "host/transfer/ChangedRoutes.h"
#include "host/transfer/DeviceRoutePoints.h"
#include "host/transfer/MissingRecords.h"
#include "host/transfer/PresentFiles.h"
#include "host/transfer/PresentRecords.h"
#include "host/transfer/PresentTracks.h"
#include "host/transfer/ProgressTracker.h"
#include "host/transfer/RecordComparison.h"
#include "host/transfer/RepeatedRecords.h"

#include <platform/System/FileError.h>

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

namespace host {
namespace {

// @param comparison  used by the rules
TextRules rulesOf(const gps::GPSFileDevice& device, RecordComparison& comparison)
{
    return {.characters = gps::CharacterSet{device.deviceCharacters()},
            .longestName = device.longestName(),
            .symbolCode = [&](std::string_view symbol) { return comparison.codeOf(symbol); }};
}

void fitTexts(PreparedSend& send, const RecordSource& onDevice)
{
    auto& data = *send.request.data;
    RecordComparison comparison{*send.files};
    const auto rules = rulesOf(*send.files, comparison);
    if (send.request.fitting == SendFitting::kAll) {
        send.textChanges = fitNames(data, onDevice, rules);
        return;
    }
    auto names = storeExactNames(data, onDevice, rules);
    send.textChanges = std::move(names.changes);
    if (send.obstacle || names.conflicts.empty())
        return;
    const auto& [description, advice] = names.conflicts.front();
    send.obstacle = hostError(description, advice + ", or send without --exact-names");
}

// A driver without the interface has no points that no route uses.
RecordSource recordsOf(const PreparedSend& send)
{
    const auto* const unused = dynamic_cast<const gps::GPSUnusedRoutePoints*>(send.files);
    return [&snapshot = *send.snapshot, unused](const gps::RecordVisitor& visit) {
        snapshot.visitRecords(visit);
        if (unused == nullptr)
            return;
        for (const auto& file : snapshot.files()) {
            if (!file.error)
                unused->visitUnusedRoutePointsIn(
                    file.path, file.content,
                    [&visit](const gps::Dictionary& point) { visit(kRoutePointKey, point); });
        }
    };
}

// What a driver would lose without a word of data that nobody fits to the device.
void findFaults(PreparedSend& send)
{
    send.storedData = *send.request.data;
    RecordComparison comparison{*send.files};
    auto names =
        storeExactNames(*send.storedData, recordsOf(send), rulesOf(*send.files, comparison));
    for (auto& [description, advice] : names.conflicts)
        send.faults.push_back(hostError(std::move(description), std::move(advice)));
    for (const auto& [kind, name] : emptyRecordsIn(*send.request.data))
        send.faults.push_back(
            hostError(fmt::format("The {} {} has no points", kind,
                                  name.empty() ? "without a name" : '"' + displayText(name) + '"'),
                      "Give it some in the file, or remove it"));
}

void fitToDevice(PreparedSend& send)
{
    auto& data = *send.request.data;
    const auto onDevice = recordsOf(send);
    fitTexts(send, onDevice);
    send.repeated = removeRepeatedRecords(data, *send.files, send.request.onRepeated);
    // After the names: points are compared by the names that the device will store.
    if (!send.request.sendsPresent)
        send.present = removePresentRecords(
            data,
            [&send](const gps::RecordFilter& isChosen, const gps::RecordVisitor& visit) {
                send.snapshot->visitChosenRecords(isChosen, visit);
            },
            *send.files, send.mayReplace);
    useDeviceRoutePoints(data, onDevice, *send.files);
    if (send.request.sendsPresent || send.obstacle)
        return;
    const auto tracks = removePresentTracks(data, *send.snapshot);
    send.present.tracks = tracks.tracks;
    send.present.trackPoints = tracks.trackPoints;
}

// A file that is not text has its content in the snapshot, so the backup can keep it.
bool isUnread(const gps::DeviceFile& file)
{
    return file.error && file.error->code() != gps::FileErrorCode::kReadNotAscii &&
           file.error->code() != gps::FileErrorCode::kReadNoSuchFile;
}

std::optional<gps::Error> obstacleIn(const gps::DeviceSnapshot& snapshot)
{
    if (!snapshot.failures().empty())
        return snapshot.failures().front();
    const auto& files = snapshot.files();
    const auto unread = std::find_if(files.begin(), files.end(), isUnread);
    return unread != files.end() ? unread->error : std::nullopt;
}

bool isBlocked(const gps::PlannedFile& file)
{
    return file.action == gps::PlannedFile::Action::kSkip;
}

// The points of two routes can get the same number from the driver: "Stop 1". Names that were
// fitted never do.
std::optional<gps::Error> lostName(const PreparedSend& send)
{
    const auto& files = send.plan.files;
    if (send.request.fitting != SendFitting::kRoutePoints ||
        std::any_of(files.begin(), files.end(), isBlocked))
        return std::nullopt;
    const auto missing = missingRecords(send.stored(), send.plan, *send.files);
    if (missing.empty())
        return std::nullopt;
    return hostError(fmt::format("The {} \"{}\" would not be on the device, because another one "
                                 "would get its name",
                                 missing.front().kind,
                                 displayText(missing.front().name.value_or(""))),
                     "Give it another name in the file, or send without --exact-names");
}

std::optional<gps::Error> changeOfRoutes(const PreparedSend& send, const gps::SendPlan& before)
{
    const auto& data = *send.request.data;
    const bool isFitted = send.request.fitting != SendFitting::kNone;
    const auto* const advice =
        send.request.fitting == SendFitting::kRoutePoints
            ? "Give the points of the routes different names in the file, or send without "
              "--exact-names"
            : tr("Give the points of the routes different names in the file");
    auto route = changedRoute(data, before, send.plan, *send.files);
    if (!route && isFitted)
        route = distortedRoute(data, send.plan, *send.files);
    if (route)
        return hostError(
            trFormat("The route \"{}\" would be changed, because a point of another route "
                     "would get the number and so the name of one of its points",
                     displayText(*route)),
            advice);
    if (const auto point = changedPoint(before, send.plan, *send.files))
        return hostError(trFormat("The point \"{}\", which no route of the device uses, would "
                                  "be replaced by a point of a route that would get its name",
                                  displayText(*point)),
                         advice);
    return std::nullopt;
}

// Plans a send without routes first: the last plan is the one whose texts the driver keeps.
void planRoutes(PreparedSend& send)
{
    const auto& data = *send.request.data;
    const auto before = send.snapshot->planSend({{"route", gps::Array{}}});
    send.plan = send.snapshot->planSend(data);
    auto change = changeOfRoutes(send, before);
    if (!change)
        return;
    if (send.request.fitting == SendFitting::kNone) // sent as it is, with a warning
        send.faults.push_back(*std::move(change));
    else if (!send.obstacle)
        send.obstacle = std::move(change);
}

void plan(PreparedSend& send)
{
    auto& data = *send.request.data;
    if (data.findArray("route") != nullptr)
        planRoutes(send);
    else
        send.plan = send.snapshot->planSend(data);
    if (send.request.fitting == SendFitting::kNone || send.request.sendsPresent || send.obstacle)
        return;
    const auto unchanged = removeUnchangedKinds(data, send.plan, *send.snapshot, *send.files);
    if (unchanged.isEmpty())
        return;
    send.present += unchanged;
    send.plan = send.snapshot->planSend(data);
}

void lock(PreparedSend& send)
{
    if (send.request.isDryRun || send.device.location.empty())
        return;
    send.lock.emplace(send.device.location);
    if (send.lock->isHeldByAnother())
        send.obstacle = deviceInUse(send.device.location);
}

} // namespace

gps::Error deviceInUse(const std::string& device)
{
    return hostError(tr("Another program is writing to this device"),
                     tr("Wait until it has finished, and try again"), device);
}

RecordCounts PreparedSend::leftOut() const noexcept
{
    RecordCounts counts{.waypoints = request.skippedWaypoints};
    for (const auto& record : emptyRecords)
        ++(record.kind == "route" ? counts.routes : counts.tracks);
    return counts;
}

std::vector<UnstoredText> PreparedSend::unstoredTexts() const
{
    const auto isSent = [this](const UnstoredText& text) {
        const char* const key = text.noun == "track"             ? "track"
                                : text.noun.starts_with("route") ? "route"
                                                                 : "waypoint";
        return request.data && request.data->findArray(key) != nullptr;
    };
    std::vector<UnstoredText> sent;
    std::copy_if(request.unstoredTexts.begin(), request.unstoredTexts.end(),
                 std::back_inserter(sent), isSent);
    return sent;
}

PreparedSend prepareSend(ChosenDevice device, SendRequest request)
{
    PreparedSend send{.device = std::move(device), .request = std::move(request)};
    const bool isFitted = send.request.data && send.request.fitting != SendFitting::kNone;
    if (send.request.data) // a driver would write them beyond their field
        send.impossibleAltitudes = clearImpossibleAltitudes(*send.request.data);
    if (isFitted) {
        send.emptyRecords = removeEmptyRecords(*send.request.data);
        send.segmentedTracks = fitSegments(*send.request.data, send.request.segmentRule);
    }
    send.canSend = canSend(*send.device.driver);
    if (send.canSend)
        send.files = dynamic_cast<const gps::GPSFileDevice*>(send.device.driver.get());
    if (send.files == nullptr || !send.request.data)
        return send;
    ProgressTracker progress{send.request.progress};
    progress.begin(TransferPhase::kReadingDevice);
    // Before the device is read, so that the plan is still true when it is carried out.
    lock(send);
    if (!send.request.isDryRun)
        send.state = DeviceState::of(send.device.location, send.files->dataFolders());
    send.snapshot = send.files->takeSnapshot();
    if (send.snapshot) {
        if (send.lock && send.lock->isOfAny(send.snapshot->dataFolders()))
            send.lock.reset();
        if (!send.obstacle)
            send.obstacle = obstacleIn(*send.snapshot);
        if (isFitted)
            fitToDevice(send);
        else
            findFaults(send);
        plan(send);
        if (send.mayReplace)
            send.replaced = replacedRecords(send.stored(), send.plan, *send.snapshot, *send.files);
        if (!send.obstacle)
            send.obstacle = lostName(send);
        if (!send.obstacle && send.request.isDryRun)
            send.unplanned = unplannedRecords(send.stored(), send.plan, *send.files);
    }
    progress.finish();
    return send;
}

std::uint64_t plannedBytes(const gps::SendPlan& plan) noexcept
{
    std::uint64_t bytes = 0;
    for (const auto& file : plan.files) {
        if (file.action != gps::PlannedFile::Action::kSkip)
            bytes += std::string_view{file.content}.size();
    }
    return bytes;
}

std::size_t plannedWrites(const gps::SendPlan& plan) noexcept
{
    return static_cast<std::size_t>(
        std::count_if(plan.files.begin(), plan.files.end(), [](const gps::PlannedFile& file) {
            return file.action != gps::PlannedFile::Action::kSkip;
        }));
}

} // namespace host
