// SPDX-License-Identifier: MIT
// RepeatedRecords: leaves out of a send what it holds more than once, since a device stores such
// records once. Stateless. [any]

#pragma once

#include "host/transfer/RecordCounts.h"

#include <gps/GPSFileDevice.h>

namespace host {

/// Removes each waypoint, geocache and route that the device would store exactly like an earlier
/// one with the same name.
/// @param data    the records to send; changed in place
/// @param device  knows which symbols are the same to the device
/// @return        how many were removed
[[nodiscard]] RecordCounts removeRepeatedRecords(gps::Dictionary& data,
                                                 const gps::GPSFileDevice& device);

} // namespace host
