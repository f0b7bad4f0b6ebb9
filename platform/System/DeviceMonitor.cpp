// SPDX-License-Identifier: MIT
// Polls the mount table, which signals changes as POLLPRI, and the device database's socket.

#include "DeviceMonitor.h"

#include "FileSystem.h"
#include "OpenFile.h"
#include "Udev.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <string_view>

#include <fcntl.h>
#include <poll.h>

namespace gps {
namespace {

using Clock = std::chrono::steady_clock;

/// Plugging in a receiver adds a disk, a partition and a mount one after another.
constexpr std::chrono::milliseconds kCombineFor{200};

/// The time-out for poll(): -1 for no limit, 0 if the end has passed.
int millisecondsUntil(Clock::time_point end)
{
    if (end == Clock::time_point::max())
        return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
    return static_cast<int>(std::clamp<std::int64_t>(left, 0, std::numeric_limits<int>::max()));
}

UdevMonitor makeMonitor(udev* database)
{
    UdevMonitor monitor{database != nullptr ? udev_monitor_new_from_netlink(database, "udev")
                                            : nullptr};
    if (!monitor)
        return nullptr;
    for (const char* subsystem : {"block", "tty"})
        udev_monitor_filter_add_match_subsystem_devtype(monitor.get(), subsystem, nullptr);
    udev_monitor_enable_receiving(monitor.get());
    return monitor;
}

} // namespace

/// The mount table signals every change once; the device database reports every device. If one of
/// them is missing, for example in a container, its descriptor is -1, which poll() ignores.
struct DeviceMonitor::Watches {
    OpenFile mountTable{FileSystem::system(),
                        FileSystem::system().open("/proc/self/mountinfo", O_RDONLY, 0)};
    Udev database{udev_new()};
    UdevMonitor monitor = makeMonitor(database.get());

    void noteDevice(DeviceChanges& changes) const
    {
        const UdevDevice device{udev_monitor_receive_device(monitor.get())};
        const char* const subsystem = device ? udev_device_get_subsystem(device.get()) : nullptr;
        if (subsystem == nullptr)
            return;
        changes.volumes |= subsystem == std::string_view{"block"};
        changes.serialPorts |= subsystem == std::string_view{"tty"};
    }
};

DeviceMonitor::DeviceMonitor(int wakeUp) : watches_(std::make_unique<Watches>()), wakeUp_(wakeUp) {}
DeviceMonitor::~DeviceMonitor() = default;

DeviceChanges DeviceMonitor::wait(std::chrono::milliseconds limit)
{
    const int devices = watches_->monitor ? udev_monitor_get_fd(watches_->monitor.get()) : -1;
    std::array<pollfd, 3> watched{
        {{watches_->mountTable.get(), POLLPRI, 0}, {devices, POLLIN, 0}, {wakeUp_, POLLIN, 0}}};
    auto end = limit.count() < 0 ? Clock::time_point::max() : Clock::now() + limit;
    DeviceChanges changes;
    for (;;) {
        const int ready = ::poll(watched.data(), watched.size(), millisecondsUntil(end));
        changes.interrupted =
            (ready < 0 && errno == EINTR) || (ready > 0 && watched[2].revents != 0);
        if (ready <= 0 || changes.interrupted)
            return changes;
        const bool first = !changes.volumes && !changes.serialPorts;
        changes.volumes |= (watched[0].revents & (POLLPRI | POLLERR)) != 0;
        if (watched[1].revents != 0)
            watches_->noteDevice(changes);
        if (first && (changes.volumes || changes.serialPorts))
            end = std::min(end, Clock::now() + kCombineFor);
    }
}

} // namespace gps
