// SPDX-License-Identifier: MIT
// Lists ports from the device database, and from the user default for ports that it cannot know.

#include "SerialPorts.h"

#include <gps/NumberText.h>
#include <platform/System/Udev.h>
#include <platform/System/UserDefaults.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gps {
namespace {

/// All names but "tty0" to "tty63": these consoles are in every system, and udev would look at each
/// for as long as the rest of the program takes to start.
constexpr std::array kNoConsoles{"[!t]*", "t[!t]*", "tt[!y]*", "tty[!0-9]*"};

struct Port {
    bool onUsb = false;
    Dictionary record;
};

Dictionary recordOf(const std::string& path, std::string name)
{
    return {{"location", path}, {"name", std::move(name)}};
}

/// A rule of udev can tie a port to the receiver that is always connected to it.
Dictionary recordOf(udev_device* terminal, const std::string& path, std::string name)
{
    auto record = recordOf(path, std::move(name));
    if (textOf(udev_device_get_property_value(terminal, kReceiverProperty)) == "1")
        record.set("receiver", true);
    return record;
}

/// The kernel also creates terminals for consoles, which have no device, and for ports that a board
/// might have: a port of type 0 has no chip, and a port without a driver above it is not in use.
bool hasHardware(udev_device* terminal)
{
    udev_device* above = udev_device_get_parent(terminal);
    if (above == nullptr || textOf(udev_device_get_sysattr_value(terminal, "type")) == "0")
        return false;
    while (above != nullptr && textOf(udev_device_get_driver(above)).empty())
        above = udev_device_get_parent(above);
    return above != nullptr;
}

void setHexadecimal(Dictionary& record, const char* key, std::string_view digits)
{
    const auto number = hexInteger(digits);
    if (number && *number <= 0xFFFF) // USB identifiers have 16 bits
        record.set(key, static_cast<std::int32_t>(*number));
}

Port portOf(udev_device* terminal)
{
    const std::string path = udev_device_get_devnode(terminal);
    udev_device* const usb =
        udev_device_get_parent_with_subsystem_devtype(terminal, "usb", "usb_device");
    if (usb == nullptr)
        return {false, recordOf(terminal, path, path)};
    const auto attribute = [usb](const char* name) {
        return textOf(udev_device_get_sysattr_value(usb, name));
    };
    const std::string product{attribute("product")};
    auto record = recordOf(terminal, path, product.empty() ? path : product + " (" + path + ")");
    setHexadecimal(record, "vendorID", attribute("idVendor"));
    setHexadecimal(record, "productID", attribute("idProduct"));
    if (const auto serial = attribute("serial"); !serial.empty())
        record.set("serialNumber", serial);
    return {true, std::move(record)};
}

std::vector<Port> hardwarePorts()
{
    std::vector<Port> ports;
    const Udev database{udev_new()};
    const UdevEnumerate terminals{database ? udev_enumerate_new(database.get()) : nullptr};
    if (!terminals)
        return ports;
    udev_enumerate_add_match_subsystem(terminals.get(), "tty");
    for (const char* const pattern : kNoConsoles)
        udev_enumerate_add_match_sysname(terminals.get(), pattern);
    udev_enumerate_scan_devices(terminals.get());
    for (auto* entry = udev_enumerate_get_list_entry(terminals.get()); entry != nullptr;
         entry = udev_list_entry_get_next(entry)) {
        const UdevDevice terminal{
            udev_device_new_from_syspath(database.get(), udev_list_entry_get_name(entry))};
        if (terminal && udev_device_get_devnode(terminal.get()) != nullptr &&
            hasHardware(terminal.get()))
            ports.push_back(portOf(terminal.get()));
    }
    return ports;
}

/// USB ports first, because most receivers are connected to one. Then by name, with "ttyUSB2"
/// before "ttyUSB10".
bool comesBefore(const Port& a, const Port& b)
{
    if (a.onUsb != b.onUsb)
        return a.onUsb;
    return ::strverscmp(a.record.findString("name")->c_str(),
                        b.record.findString("name")->c_str()) < 0;
}

/// Adds the ports that the user has named, unless they are listed already.
void addTestPorts(std::vector<Port>& ports)
{
    for (const auto& path : UserDefaults::standard()
                                .stringArrayForKey(kTestPortsKey)
                                .value_or(std::vector<std::string>{})) {
        const auto isListed = [&](const Port& port) {
            return *port.record.findString("location") == path;
        };
        if (std::none_of(ports.begin(), ports.end(), isListed))
            ports.push_back({false, recordOf(path, path)});
    }
}

} // namespace

Array getSerialPorts()
{
    auto ports = hardwarePorts();
    std::sort(ports.begin(), ports.end(), comesBefore);
    addTestPorts(ports);
    Array records;
    for (auto& port : ports)
        records.emplace_back(std::move(port.record));
    return records;
}

} // namespace gps
