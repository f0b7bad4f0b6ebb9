// SPDX-License-Identifier: MIT
// One sentence of each kind of record that is reported on its own.

#pragma once

#include "support/Sentence.h"

#include <string>

namespace support {

inline const std::string kWayPoint = sentence("PMGNWPL,4600.000,N,00730.000,E,0000500,M,A,,c");
inline const std::string kGeoCache = sentence("PMGNGEO,4600.000,N,00730.000,E,0000500,M,G,,,,,,,,");
inline const std::string kTrackPoint =
    sentence("PMGNTRK,4600.000,N,00730.000,E,00500,M,120000,A,T,290208");

} // namespace support
