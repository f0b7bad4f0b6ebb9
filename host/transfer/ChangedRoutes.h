// SPDX-License-Identifier: MIT
// ChangedRoutes: finds a route, or a route point, that a send would change. A driver gives a number
// to a route point whose name a different point has, and the numbered name can be that of a third
// point. Names that were fitted leave a driver nothing to number, so this guards against drivers
// that do more, and finds what exact names and data files lead to. Stateless. [any]

#pragma once

#include <gps/GPSFileDevice.h>

#include <optional>
#include <string>

namespace host {

/// The name of the first route that would no longer be on the device as it is now, although the
/// data has no route of its name; nullopt if there is none.
/// @param data    the records to send
/// @param before  the plan of a send without routes: what the device holds
/// @param plan    the plan of the send
/// @param device  decodes the planned files
[[nodiscard]] std::optional<std::string> changedRoute(const gps::Dictionary& data,
                                                      const gps::SendPlan& before,
                                                      const gps::SendPlan& plan,
                                                      const gps::GPSFileDevice& device);

/// The name of a point that no route of the device uses, and that would no longer be on the device
/// as it is now; nullopt if there is none.
[[nodiscard]] std::optional<std::string> changedPoint(const gps::SendPlan& before,
                                                      const gps::SendPlan& plan,
                                                      const gps::GPSFileDevice& device);

/// The name of the first route of the data that would not be on the device as it is sent; nullopt
/// if there is none. The names of its points do not count, nor does a route with a point that
/// cannot be stored.
[[nodiscard]] std::optional<std::string> distortedRoute(const gps::Dictionary& data,
                                                        const gps::SendPlan& plan,
                                                        const gps::GPSFileDevice& device);

} // namespace host
