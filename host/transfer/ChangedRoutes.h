// SPDX-License-Identifier: MIT
// ChangedRoutes: finds a route that a send with exact names would change. A driver gives a number
// to a route point whose name a different point has, and the numbered name can be that of a third
// point. Stateless. [any]

#pragma once

#include <gps/GPSFileDevice.h>

#include <optional>
#include <string>

namespace host {

/// The name of the first route that would not be on the device as it is now or, if it is sent, as
/// it is in the data; nullopt if there is none. The names of the points of sent routes do not
/// count.
/// @param data    the records to send
/// @param before  the plan of a send without routes: what the device holds
/// @param plan    the plan of the send
/// @param device  decodes the planned files
[[nodiscard]] std::optional<std::string> changedRoute(const gps::Dictionary& data,
                                                      const gps::SendPlan& before,
                                                      const gps::SendPlan& plan,
                                                      const gps::GPSFileDevice& device);

} // namespace host
