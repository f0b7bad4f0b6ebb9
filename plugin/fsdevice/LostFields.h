// SPDX-License-Identifier: MIT
// LostFields: counts what the sentences of a receiver have no field for. Part of the planning
// before a send. Stateless. [any]

#pragma once

#include "SendOrder.h"

#include <gps/GPSFileDevice.h>

#include <vector>

namespace magellan {

/// Appends an entry for each field that records of a job have and the receiver does not store: the
/// names of tracks, the times of their points that no date text can carry, and the times of
/// waypoints and of the points of routes. Also one for altitudes that are unknown, since every
/// sentence has an altitude.
void countLostFields(const SendJob& job, std::vector<gps::LostField>& lost);

} // namespace magellan
