// SPDX-License-Identifier: MIT
// Smart pointers to libudev's objects. Private to the platform. [host thread]

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

/// A text from the database; empty if the database has none.
inline std::string_view textOf(const char* text)
{
    return text != nullptr ? std::string_view{text} : std::string_view{};
}

} // namespace gps
