// SPDX-License-Identifier: MIT
// PresentTracks: leaves out of a send the tracks that the device holds already. [host thread]

#pragma once

#include "host/transfer/RecordCounts.h"

#include <gps/GPSFileDevice.h>
#include <gps/Value.h>

namespace host {

/// Reads the device's tracks and removes those that it holds: with the same points in the same
/// order, each with the same coordinates, altitude and time after the device's rounding. Names do
/// not count, since a device may not store them. A track that cannot be read from the device is not
/// recognised, and stays in the data.
/// @param data  the records to send; changed in place. If no track is left, their key is removed
/// @return      how many tracks and track points were removed
[[nodiscard]] RecordCounts removePresentTracks(gps::Dictionary& data,
                                               const gps::DeviceSnapshot& device);

} // namespace host
