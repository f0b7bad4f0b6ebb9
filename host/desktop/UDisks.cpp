// SPDX-License-Identifier: MIT
// Source: the interfaces Manager, Block, Filesystem and Drive of udisks2's D-Bus reference.

#include "host/desktop/UDisks.h"

#include "host/base/HostError.h"
#include "host/base/TranslatedFormat.h"
#include "host/desktop/Bus.h"

#include <fmt/format.h>

#include <optional>
#include <string>
#include <string_view>

namespace host {
namespace {

constexpr char kService[] = "org.freedesktop.UDisks2";
constexpr char kManager[] = "/org/freedesktop/UDisks2/Manager";
constexpr char kFilesystem[] = "org.freedesktop.UDisks2.Filesystem";
constexpr char kDrive[] = "org.freedesktop.UDisks2.Drive";
constexpr char kProperties[] = "org.freedesktop.DBus.Properties";
constexpr char kNoOptions[] = "a{sv}"; // with the argument 0: an empty dictionary
constexpr char kNoDrive[] = "/";

gps::Error errorOf(std::string_view what, const BusFailure& failure, const std::string& node)
{
    if (failure.isUnavailable())
        return hostError(trFormat("{}, because udisks2 is not running ({})", what, failure.message),
                         tr("Install the package udisks2, or mount and unmount the disk yourself"),
                         node);
    if (failure.name == "org.freedesktop.UDisks2.Error.DeviceBusy")
        return hostError(trFormat("{}, because another program uses it", what),
                         tr("Close the programs and folders that use the disk, and unmount it"),
                         node);
    return hostError(fmt::format("{}: {}", what, failure.message),
                     tr("Mount or unmount it with your desktop, or with \"udisksctl\""), node);
}

} // namespace

UDisks::UDisks() = default;
UDisks::~UDisks() = default;

Bus& UDisks::bus()
{
    if (bus_ == nullptr)
        bus_ = std::make_unique<Bus>(Bus::Kind::kSystem);
    return *bus_;
}

std::optional<BusFailure> UDisks::findObject(const std::string& node, std::string& object)
{
    Bus::Reply reply;
    if (auto failure =
            bus().call({kService, kManager, "org.freedesktop.UDisks2.Manager"}, "ResolveDevice",
                       reply, "a{sv}a{sv}", 1, "path", "s", node.c_str(), 0))
        return failure;
    const char* path = nullptr;
    if (!reply.read("ao", 1, &path))
        return BusFailure{"org.freedesktop.UDisks2.Error.Failed", tr("it does not know this disk")};
    object = path;
    return std::nullopt;
}

std::optional<BusFailure> UDisks::findDrive(const std::string& node, std::string& drive)
{
    std::string object;
    if (auto failure = findObject(node, object))
        return failure;
    Bus::Reply reply;
    if (auto failure = bus().call({kService, object, kProperties}, "Get", reply, "ss",
                                  "org.freedesktop.UDisks2.Block", "Drive"))
        return failure;
    const char* path = nullptr;
    drive = reply.read("v", "o", &path) ? path : kNoDrive;
    return std::nullopt;
}

std::optional<BusFailure> UDisks::driveCan(const std::string& drive, const char* property,
                                           bool& answer)
{
    Bus::Reply reply;
    if (auto failure =
            bus().call({kService, drive, kProperties}, "Get", reply, "ss", kDrive, property))
        return failure;
    int value = 0;
    answer = reply.read("v", "b", &value) && value != 0;
    return std::nullopt;
}

std::optional<gps::Error> UDisks::whyUnavailable()
{
    Bus::Reply reply;
    const auto failure = bus().call({kService, kManager, kProperties}, "Get", reply, "ss",
                                    "org.freedesktop.UDisks2.Manager", "Version");
    return failure && failure->isUnavailable()
               ? std::optional{errorOf(tr("Disks cannot be mounted"), *failure, {})}
               : std::nullopt;
}

std::optional<gps::Error> UDisks::mount(const std::string& node, std::string& folder)
{
    std::string object;
    Bus::Reply reply;
    auto failure = findObject(node, object);
    if (!failure)
        failure = bus().call({kService, object, kFilesystem}, "Mount", reply, kNoOptions, 0);
    if (failure)
        return errorOf(tr("The disk cannot be mounted"), *failure, node);
    const char* path = nullptr;
    if (!reply.read("s", &path))
        return hostError(tr("The disk was mounted, but udisks2 does not say where"), "", node);
    folder = path;
    return std::nullopt;
}

std::optional<gps::Error> UDisks::unmount(const std::string& node)
{
    std::string object;
    Bus::Reply reply;
    auto failure = findObject(node, object);
    if (!failure)
        failure = bus().call({kService, object, kFilesystem}, "Unmount", reply, kNoOptions, 0);
    return failure ? std::optional{errorOf(tr("The disk cannot be unmounted"), *failure, node)}
                   : std::nullopt;
}

std::optional<gps::Error> UDisks::powerOff(const std::string& node, bool& isOff)
{
    std::string drive;
    bool canPowerOff = false;
    bool canEject = false;
    auto failure = findDrive(node, drive);
    if (!failure && drive == kNoDrive) {
        isOff = false;
        return std::nullopt;
    }
    if (!failure)
        failure = driveCan(drive, "CanPowerOff", canPowerOff);
    if (!failure && !canPowerOff)
        failure = driveCan(drive, "Ejectable", canEject);
    Bus::Reply reply;
    if (!failure && (canPowerOff || canEject))
        failure = bus().call({kService, drive, kDrive}, canPowerOff ? "PowerOff" : "Eject", reply,
                             kNoOptions, 0);
    if (failure)
        return errorOf(tr("The device cannot be switched off"), *failure, node);
    isOff = canPowerOff;
    return std::nullopt;
}

} // namespace host
