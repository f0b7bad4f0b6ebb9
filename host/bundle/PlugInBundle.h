// SPDX-License-Identifier: MIT
// Finds a plug-in bundle, loads its module and asks the loader what it offers. Used once by each
// program at start. [host thread]

#pragma once

#include <gps/Error.h>
#include <gps/GPSPlugInProtocol.h>
#include <gps/VeloranPlugIn.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace host {

using Driver = std::shared_ptr<gps::GPSPlugInProtocol>;

/// The version of the loader interface that this host supports.
inline constexpr std::int32_t kLoaderAPIVersion = 1;

/// What a loaded bundle reports about itself. The module stays loaded until the process ends.
struct PlugInBundle {
    std::string path{};
    std::string name{};
    gps::Dictionary info{};
    std::string plugInClass{};
    std::int32_t apiVersion = 0;
    std::vector<Driver> drivers{}; ///< in the plug-in's order; may be empty
    gps::VeloranPlugIn* loader = nullptr;
};

/// The paths to search for the bundle when the user names none: beside the program, as in a build
/// tree, then the installed location relative to the program.
/// @param program  the path of the running program
[[nodiscard]] std::vector<std::string> bundleCandidates(const std::string& program);

/// Finds the bundle to load.
/// @param requested  the user's choice; returned as it is
/// @return           its path; nullopt if there is no bundle at any of the candidates
[[nodiscard]] std::optional<std::string> findBundle(const std::optional<std::string>& requested);

/// Loads the bundle's module and queries its loader, in the order that plug-ins expect.
/// @param bundle  out: unchanged after a failure
/// @return        what is missing or damaged
[[nodiscard]] std::optional<gps::Error> loadBundle(const std::string& path, PlugInBundle& bundle);

/// Asks a loaded bundle for its drivers again, because a plug-in may offer a driver only while
/// there is a device for it.
/// @param bundle  gets the new drivers, after its present ones. A driver whose class is already
///                there is not replaced
void addNewDrivers(PlugInBundle& bundle);

} // namespace host
