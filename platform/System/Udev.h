// SPDX-License-Identifier: MIT
// The device database's objects, released at the end of their scope. Private to the platform. [host
// thread]

#pragma once

#include <libudev.h>

#include <memory>
#include <string_view>

namespace gps {

template <auto release> struct UdevRelease {
    template <typename T> void operator()(T* object) const noexcept { release(object); }
};

using Udev = std::unique_ptr<udev, UdevRelease<&udev_unref>>;
using UdevDevice = std::unique_ptr<udev_device, UdevRelease<&udev_device_unref>>;
using UdevEnumerate = std::unique_ptr<udev_enumerate, UdevRelease<&udev_enumerate_unref>>;
using UdevMonitor = std::unique_ptr<udev_monitor, UdevRelease<&udev_monitor_unref>>;

/// What the database answers when asked for a text; empty for none.
inline std::string_view textOf(const char* text)
{
    return text != nullptr ? std::string_view{text} : std::string_view{};
}

} // namespace gps
