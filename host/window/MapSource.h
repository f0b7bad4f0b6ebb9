// SPDX-License-Identifier: MIT
// MapSource: which map is below the records. A value. [any]

#pragma once

#include <string>

namespace host {

struct MapSource {
    enum class Kind {
        kCoasts,        ///< coasts and names of places, which are built in
        kOpenStreetMap, ///< tiles from the network
        kFile,          ///< tiles of an .mbtiles file
    };

    Kind kind = Kind::kCoasts;
    std::string path{}; ///< of the file
};

} // namespace host
