// SPDX-License-Identifier: MIT
// The serial ports of this machine. [host thread]

#pragma once

#include <gps/Value.h>

namespace gps {

/// The user default with the paths of further ports, which have no known hardware behind them.
inline constexpr char kTestPortsKey[] = "OrvTestPortList";

/// The udev property of a port that has a receiver at its other end: "1". A rule sets it.
inline constexpr char kReceiverProperty[] = "ID_GPS_RECEIVER";

/// `getSerialPorts`: every serial port with hardware behind it, then the paths under
/// "OrvTestPortList". USB ports come first; each group is sorted by name, with numbers in numeric
/// order. No port is listed twice. [host thread]
/// @return  records with "location" (the device path), "name" (what a person recognises) and, if
///          known, "vendorID", "productID" (numbers) and "serialNumber" (string); "receiver" is
///          true if the port has kReceiverProperty
[[nodiscard]] Array getSerialPorts();

} // namespace gps
