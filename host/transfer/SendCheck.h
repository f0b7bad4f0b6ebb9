// SPDX-License-Identifier: MIT
// Whether a send did what it was to do. A driver's worker keeps its failures to itself, so the host
// looks for itself. [host thread]

#pragma once

#include "host/operations/Operation.h"

#include <gps/GPSFileDevice.h>

#include <vector>

namespace host {

/// The kinds of records that a data dictionary holds, in the order in which they are sent.
[[nodiscard]] std::vector<gps::TransferKind> kindsIn(const gps::Dictionary& data);

/// Reads each file back that was to be written.
/// @return  an error for each that is not there or holds something else than planned
[[nodiscard]] std::vector<gps::Error> missingFiles(const gps::SendPlan& plan);

/// Whether a logged error tells no more than the plan does: that a file to be made was not there
/// before, or why the present content of one cannot be merged.
[[nodiscard]] bool isForeseen(const gps::Error& logged, const gps::SendPlan& plan);

} // namespace host
