// SPDX-License-Identifier: MIT
// PresentRecords: leaves out of a send what the device holds already. Stateless. [any]

#pragma once

#include "host/fitting/RecordList.h"
#include "host/transfer/RecordCounts.h"

#include <gps/GPSFileDevice.h>

namespace host {

/// Removes the waypoints, geocaches and routes that the device holds. Records of one name are
/// removed together or not at all: if one of them differs from what the device holds under that
/// name, each may replace another.
/// @param data      the records to send; changed in place. A kind that is left without records
///                  loses its key
/// @param onDevice  visits records of the device
/// @param device    knows which symbols are the same to the device
/// @param isAnyNameOnDevice  out: whether the device has a waypoint, geocache or route with
///                           the name of one in the data
/// @return          how many were removed
[[nodiscard]] RecordCounts removePresentRecords(gps::Dictionary& data,
                                                const ChosenRecordSource& onDevice,
                                                const gps::GPSFileDevice& device,
                                                bool& isAnyNameOnDevice);

} // namespace host
