// SPDX-License-Identifier: MIT
// A disk that was mounted by somebody else is left mounted, unless it is ejected.

#include "host/desktop/DeviceDisk.h"

#include "host/base/FrontEnd.h"
#include "host/base/HostError.h"
#include "host/base/TranslatedFormat.h"
#include "host/bundle/Disk.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace host {
namespace {

void refreshVolumes(const std::vector<Driver>& drivers)
{
    for (const auto& driver : drivers) {
        if (driver->needsFileSystemRefresh())
            driver->refreshDeviceList();
    }
}

bool isReceiverMounted(const std::vector<Driver>& drivers)
{
    return std::any_of(drivers.begin(), drivers.end(), [](const Driver& driver) {
        return driver->needsFileSystemRefresh() && driver->isReady();
    });
}

// Unmounting writes everything, too, but does not say whether that has worked.
std::optional<gps::Error> flush(const std::string& folder)
{
    const int file = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool isWritten = file >= 0 && ::syncfs(file) == 0;
    const int code = errno;
    if (file >= 0)
        ::close(file);
    return isWritten ? std::nullopt
                     : std::optional{systemError(tr("The disk could not write everything"),
                                                 tr("Leave it connected, and check its files"),
                                                 folder, code)};
}

} // namespace

std::optional<gps::Error> DeviceDisk::choose(const std::vector<Driver>& drivers,
                                             DeviceRequest request, ChosenDevice& chosen)
{
    if (options_.mount) {
        if (auto failure = mountFor(drivers, request))
            return failure;
    }
    ChosenDevice found;
    if (const auto failure = chooseDevice(drivers, request, found)) {
        (void)unmount();
        return options_.mount && !request.device ? withDiskService(*failure) : failure;
    }
    if (options_.eject) {
        ejected_ = hasMounted() ? mounted_.all().front().node : removableDiskAt(found.location);
        folder_ = found.location;
        if (ejected_.empty() && options_.isEjectDefault)
            options_.eject = false;
        else if (ejected_.empty())
            return hostError(
                tr("This device cannot be ejected, because it is not a removable disk"),
                advice("Leave out --eject", tr("Unmount it with your desktop")), found.location);
    }
    chosen = std::move(found);
    return std::nullopt;
}

// There may be no disk, or one that the missing service would have made known.
gps::Error DeviceDisk::withDiskService(const gps::Error& failure)
{
    const auto missing = service_.whyUnavailable();
    if (!missing)
        return failure;
    return hostError(failure.description().value_or("") + ". " +
                         missing->description().value_or(""),
                     missing->suggestion().value_or(""), failure.path().value_or(""));
}

std::optional<gps::Error> DeviceDisk::mountFor(const std::vector<Driver>& drivers,
                                               DeviceRequest& request)
{
    if (!request.device)
        return isReceiverMounted(drivers) ? std::nullopt : findReceiver(drivers);
    if (!isDisk(*request.device))
        return std::nullopt;
    request.device = mountedFolderOf(*request.device).value_or(*request.device);
    if (!isDisk(*request.device))
        return std::nullopt;
    if (auto failure = mounted_.mount(nodeToMount(*request.device)))
        return failure;
    request.device = mounted_.all().front().folder;
    refreshVolumes(drivers);
    return std::nullopt;
}

// A disk that cannot be mounted may be just another one, or somebody else has mounted it meanwhile.
std::optional<gps::Error> DeviceDisk::findReceiver(const std::vector<Driver>& drivers)
{
    std::optional<gps::Error> failure;
    for (const auto& disk : unmountedDisks()) {
        auto refusal = mounted_.mount(disk.node);
        refreshVolumes(drivers);
        if (isReceiverMounted(drivers))
            return std::nullopt;
        if (!refusal)
            refusal = mounted_.unmount(disk.node);
        if (!failure)
            failure = std::move(refusal);
    }
    refreshVolumes(drivers);
    return failure;
}

DeviceDisk::Release DeviceDisk::release(bool succeeded)
{
    if (options_.eject && succeeded)
        return eject();
    auto released = unmount();
    if (options_.eject && released.note.empty())
        released.note = tr("The device was not ejected, because not everything was successful.");
    return released;
}

DeviceDisk::Release DeviceDisk::unmount()
{
    if (!hasMounted())
        return {};
    const auto node = mounted_.all().front().node;
    if (auto failure = mounted_.unmount(node))
        return {std::move(failure)};
    return {{}, trFormat("The disk {} is unmounted again and can be unplugged.", node)};
}

DeviceDisk::Release DeviceDisk::eject()
{
    if (auto failure = flush(folder_))
        return {std::move(failure)};
    if (auto failure = hasMounted() ? mounted_.unmount(ejected_) : service_.unmount(ejected_))
        return {std::move(failure)};
    bool isOff = false;
    if (auto failure = service_.powerOff(ejected_, isOff))
        return {std::move(failure)};
    return {{},
            isOff ? trFormat("The device {} is switched off and can be unplugged.", ejected_)
                  : trFormat("The device {} is unmounted and can be unplugged.", ejected_)};
}

} // namespace host
