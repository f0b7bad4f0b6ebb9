// SPDX-License-Identifier: MIT
// RepeatedRecords: leaves out of a send what it holds more than once. A device stores such
// waypoints, geocaches and routes once, and would store such tracks again. Stateless. [any]

#pragma once

#include "host/transfer/RecordCounts.h"

#include <gps/GPSFileDevice.h>
#include <gps/Value.h>

#include <functional>
#include <string_view>

namespace host {

/// Gets a record that is left out, and the one that is sent instead.
/// @param key  of the list that both are in
using RepeatVisitor = std::function<void(std::string_view key, const gps::Dictionary& record,
                                         const gps::Dictionary& first)>;

/// Removes each waypoint, geocache, route and track that the device would store exactly like an
/// earlier one with the same name. Each segment that becomes a track is a track of its own here.
/// @param data    the records to send; changed in place
/// @param device  knows which symbols are the same to the device
/// @param visit   called for each record before it is removed; may be empty
/// @return        how many were removed
[[nodiscard]] RecordCounts removeRepeatedRecords(gps::Dictionary& data,
                                                 const gps::GPSFileDevice& device,
                                                 const RepeatVisitor& visit = {});

} // namespace host
