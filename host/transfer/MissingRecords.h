// SPDX-License-Identifier: MIT
// Whether every record of a send lies on the device afterwards. [host thread]

#pragma once

#include <gps/GPSFileDevice.h>
#include <gps/GPSPlugInProtocol.h>

#include <string>
#include <vector>

namespace host {

/// Reads through the driver what the files written hold, and looks for each record of the data by
/// its kind and its place.
/// @return  a sentence for each record that is not there; of many the first ones, and how many more
/// there are
[[nodiscard]] std::vector<std::string> missingRecords(gps::GPSPlugInProtocol& driver,
                                                      const gps::Dictionary& data,
                                                      const gps::SendPlan& plan);

} // namespace host
