// SPDX-License-Identifier: MIT
// Recognises the route points that a device already has, before a send plans what to write.
// Stateless. [any]

#pragma once

#include "host/fitting/RecordList.h"

#include <gps/GPSFileDevice.h>

namespace host {

/// Replaces each route point that the device would store exactly like one of its own by the
/// device's own record, and one that it would store exactly like the first of its name by that.
///
/// A device rounds a point and drops its time, so the point that was sent differs from what is read
/// back. A second send would take the two for different points with the same name, and store both.
/// So it would with two points of one file that differ only in their times.
/// @param data      the records to send; changed in place
/// @param onDevice  visits the records of the device, and under kRoutePointKey its points that no
///                  route uses
/// @param device    knows which symbols are the same to the device
void useDeviceRoutePoints(gps::Dictionary& data, const RecordSource& onDevice,
                          const gps::GPSFileDevice& device);

} // namespace host
