// SPDX-License-Identifier: MIT
// What a device holds, taken into memory before a send, and used where a send would say the same
// again. [host thread]

#pragma once

#include <gps/GPSFileDevice.h>
#include <gps/GPSPlugInProtocol.h>

#include <optional>

namespace host {

/// Acquires the device's waypoints, geocaches and routes. What cannot be read is not in it.
/// @param data  out: arrays under "waypoint" and "route", as a send's data dictionary has them
/// @return      why the driver could not start
[[nodiscard]] std::optional<gps::Error> readDevice(gps::GPSPlugInProtocol& driver,
                                                   gps::Dictionary& data);

/// Replaces each route's point that would be written as a record which the device holds under the
/// same name by that very record. A point read back is not the point that was sent: it is rounded
/// and has lost its time. The device takes it for another one of the same name, and would get both.
/// @param data  the records to send; changed in place
void useRecordsOfDevice(gps::Dictionary& data, const gps::Dictionary& onDevice,
                        const gps::GPSFileDevice& device);

} // namespace host
