// SPDX-License-Identifier: MIT
// Sentences and calls that several tests of serial sessions expect.

#pragma once

#include <gps/Error.h>

#include <string>

namespace support {

inline constexpr char kCamp[] = "PMGNWPL,4600.00000,N,00700.00000,E,0000100,M,CAMP,by the lake,a";
inline constexpr char kHut[] = "PMGNWPL,4610.00000,N,00710.00000,E,0000200,M,HUT,,a";
inline constexpr char kEnd[] = "PMGNCMD,END";

/// The call that reports a session's failure.
inline const std::string kInterrupted =
    "error " + gps::Error{"com.Orvane.GPSPlugin.ErrorDomain", -4}.text();

} // namespace support
