// SPDX-License-Identifier: MIT
// A serial port that the user names, and what can be said of one that a driver could not work with.
// [host thread]

#pragma once

#include <gps/Error.h>

#include <string>

namespace host {

/// Whether a device's place is a serial port's: a character device or a link to one, or a name
/// below /dev/ that is not there any more.
[[nodiscard]] bool isSerialPlace(const std::string& place);

/// Puts a port behind those that the user has stored, for this run. Drivers see it when they are
/// made or look again: one that works on ports alone may be offered for its sake.
void useSerialPort(const std::string& place);

/// Tries to open a port, and tells in plain sentences what stands in the way and what to do about
/// it.
[[nodiscard]] gps::Error whyPortFails(const std::string& port);

/// The same of an opening that ended with this error number; 0: it opens.
[[nodiscard]] gps::Error whyPortFails(const std::string& port, int errorNumber);

/// What a driver of serial ports has reported: an error without words is its way to say that the
/// line failed, and gets some.
[[nodiscard]] gps::Error inWords(const gps::Error& reported, const std::string& port);

} // namespace host
