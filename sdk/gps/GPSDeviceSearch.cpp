// SPDX-License-Identifier: MIT

#include <gps/GPSDeviceSearch.h>

namespace gps {

// Here, so that the class has one identity in every module.
GPSDeviceSearch::~GPSDeviceSearch() = default;

} // namespace gps
