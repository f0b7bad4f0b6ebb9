// SPDX-License-Identifier: MIT
// The device is read once, into a snapshot. Fitting, planning and the backup all work from it.

#include "host/transfer/SendPreparation.h"

#include "host/transfer/DeviceRoutePoints.h"
#include "host/transfer/ProgressTracker.h"

#include <algorithm>
#include <utility>

namespace host {
namespace {

void fit(PreparedSend& send)
{
    if (send.request.fitting == SendFitting::kNone)
        return;
    auto& data = *send.request.data;
    const auto onDevice = send.snapshot->records();
    if (send.request.fitting == SendFitting::kAll)
        send.textChanges = fitNames(
            data, onDevice,
            {gps::CharacterSet{send.files->deviceCharacters()}, send.files->longestName()});
    useDeviceRoutePoints(data, onDevice, *send.files);
}

} // namespace

PreparedSend prepareSend(ChosenDevice device, SendRequest request)
{
    PreparedSend send{.device = std::move(device), .request = std::move(request)};
    send.canSend = canSend(*send.device.driver);
    if (send.canSend)
        send.files = dynamic_cast<const gps::GPSFileDevice*>(send.device.driver.get());
    if (send.files == nullptr || !send.request.data)
        return send;
    ProgressTracker progress{send.request.progress};
    progress.begin(TransferPhase::kReadingDevice);
    send.snapshot = send.files->takeSnapshot();
    if (send.snapshot) {
        fit(send);
        send.plan = send.snapshot->planSend(*send.request.data);
    }
    progress.finish();
    return send;
}

std::size_t plannedWrites(const gps::SendPlan& plan) noexcept
{
    return static_cast<std::size_t>(
        std::count_if(plan.files.begin(), plan.files.end(), [](const gps::PlannedFile& file) {
            return file.action != gps::PlannedFile::Action::kSkip;
        }));
}

} // namespace host
