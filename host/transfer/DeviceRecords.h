// SPDX-License-Identifier: MIT
// Uses a device's own records where a send would write the same again. [host thread]

#pragma once

#include <gps/GPSFileDevice.h>

namespace host {

/// Replaces each route's point that would be written as a record which the device holds under the
/// same name by that very record. A point read back is not the point that was sent: it is rounded
/// and has lost its time. The device takes it for another one of the same name, and would get both.
/// @param data  the records to send; changed in place
void useRecordsOfDevice(gps::Dictionary& data, const gps::Dictionary& onDevice,
                        const gps::GPSFileDevice& device);

} // namespace host
