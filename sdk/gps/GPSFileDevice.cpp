// SPDX-License-Identifier: MIT

#include <gps/GPSFileDevice.h>

namespace gps {

// Here, so that the class has one identity in every module.
GPSFileDevice::~GPSFileDevice() = default;

} // namespace gps
