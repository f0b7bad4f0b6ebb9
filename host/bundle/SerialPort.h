// SPDX-License-Identifier: MIT
// Serial ports named by the user, and readable errors for ports that a driver cannot work with.
// [host thread]

#pragma once

#include "host/base/Translation.h"

#include <gps/Error.h>

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

struct group; // <grp.h>

namespace host {

/// Whether a device's location is a serial port: a character device, a link to one, or a missing
/// path below /dev/, which is a port that has been unplugged.
[[nodiscard]] bool isSerialPort(const std::string& location);

/// Adds a port after the stored ones, for this run. Drivers read the list when they are created and
/// on refreshDeviceList(). A driver for serial ports may be offered only because of this port.
void addSerialPort(const std::string& port);

/// How long a port may be busy: modem managers try each new port for some seconds.
inline constexpr std::chrono::seconds kPortPatience{15};

/// Waits while another program has a port open, for kPortPatience at most.
/// @param goOn  called several times a second while the port is busy; false ends the waiting
void waitWhileBusy(const std::string& port, const std::function<bool()>& goOn);

/// The description of a failure whose port can be opened now, so that it explains nothing.
inline constexpr const char* kPortIsFree = marked("The port can be opened now");

/// Tries to open a port, and reports why it cannot be opened and what the user can do about it.
[[nodiscard]] gps::Error explainPortFailure(const std::string& port);

/// The same for an attempt that failed with this errno; 0 means that the port could be opened.
/// Names the program that has a busy port open, if this user may know.
[[nodiscard]] gps::Error explainPortFailure(const std::string& port, int errorNumber);

/// How a user gets the permission to open a port.
/// @param owner  the group that may read and write the port; null if there is none
/// @param user   the name of the user
[[nodiscard]] std::string permissionAdvice(const ::group* owner, std::string_view user);

/// An error reported by a driver for serial ports, with a description. Such a driver reports a line
/// that failed as an error without one.
[[nodiscard]] gps::Error describeSerialError(const gps::Error& reported, const std::string& port);

} // namespace host
