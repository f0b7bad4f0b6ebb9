// SPDX-License-Identifier: MIT
// The device is read once, into a snapshot. Fitting, planning and the backup all work from it.

#include "host/transfer/SendPreparation.h"

#include "host/base/HostError.h"
#include "host/transfer/DeviceRoutePoints.h"
#include "host/transfer/PresentRecords.h"
#include "host/transfer/PresentTracks.h"
#include "host/transfer/ProgressTracker.h"

#include <platform/System/FileError.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace host {
namespace {

void fitToDevice(PreparedSend& send)
{
    auto& data = *send.request.data;
    const RecordSource onDevice = [&send](const gps::RecordVisitor& visit) {
        send.snapshot->visitRecords(visit);
    };
    if (send.request.fitting == SendFitting::kAll)
        send.textChanges = fitNames(
            data, onDevice,
            {gps::CharacterSet{send.files->deviceCharacters()}, send.files->longestName()});
    // After the names: points are compared by the names that the device will store.
    if (!send.request.sendsPresent)
        send.present = removePresentRecords(
            data,
            [&send](const gps::RecordFilter& isChosen, const gps::RecordVisitor& visit) {
                send.snapshot->visitChosenRecords(isChosen, visit);
            },
            *send.files);
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
    return hostError("Another program is writing to this device",
                     "Wait until it has finished, and try again", device);
}

RecordCounts PreparedSend::leftOut() const noexcept
{
    RecordCounts counts{.waypoints = request.skippedWaypoints};
    for (const auto& record : emptyRecords)
        ++(record.kind == "route" ? counts.routes : counts.tracks);
    return counts;
}

PreparedSend prepareSend(ChosenDevice device, SendRequest request)
{
    PreparedSend send{.device = std::move(device), .request = std::move(request)};
    const bool isFitted = send.request.data && send.request.fitting != SendFitting::kNone;
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
        send.plan = send.snapshot->planSend(*send.request.data);
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
