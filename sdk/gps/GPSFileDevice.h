// SPDX-License-Identifier: MIT
// GPSFileDevice: what a driver whose devices are folders of files can tell before a send, so that a
// host can keep a copy, say what will happen, and check afterwards that it did. Optional: a host
// asks a driver for it by dynamic_cast. [host thread]

#pragma once

#include <gps/Error.h>
#include <gps/Value.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace gps {

/// What a send would do with one file of the device.
struct PlannedFile {
    enum class Fate {
        kMade,   ///< nothing stands there yet
        kMerged, ///< a present file gets a new content, what it held merged into it
        kLeft,   ///< it would not be written: `error` tells why, and where there is none there is
                 ///< nothing to write
    };

    std::string path;
    Fate fate = Fate::kLeft;
    std::string content; ///< all that the file would hold

    /// What stands in the way; for a merged file: why its present content cannot be read and would
    /// be lost.
    std::optional<Error> error;
};

/// What a send would do.
struct SendPlan {
    std::vector<PlannedFile> files; ///< in the order of writing
    std::vector<std::string>
        remarks; ///< what would not arrive as it is, or not fit: a sentence each, for the user
};

class GPSFileDevice {
public:
    virtual ~GPSFileDevice();

    /// The selected device's own identifier, as a serial number; none when no device is selected or
    /// it has none.
    [[nodiscard]] virtual std::optional<std::string> deviceIdentifier() const = 0;

    /// The folders of the selected device that hold its data, as whole paths; only those that
    /// exist.
    [[nodiscard]] virtual std::vector<std::string> dataFolders() const = 0;

    /// The characters that the devices' texts can hold; others are left out when they are written.
    [[nodiscard]] virtual std::string deviceCharacters() const = 0;

    /// How many characters a name of a waypoint or a route keeps when it is written.
    [[nodiscard]] virtual std::size_t longestName() const = 0;

    /// What a send of this data to the selected device would do, if nothing changed meanwhile.
    /// Changes nothing itself.
    /// @param data  as for `gpsRunSend:withStatus:andOptions:`
    [[nodiscard]] virtual SendPlan planSend(const Dictionary& data) const = 0;
};

} // namespace gps
