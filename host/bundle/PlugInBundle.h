// SPDX-License-Identifier: MIT
// PlugInBundle: a plug-in bundle found, loaded and asked for what it offers. [host thread]

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

/// The loader interface that this host speaks.
inline constexpr std::int32_t kLoaderAPIVersion = 1;

/// What a loaded bundle said of itself. The module stays loaded as long as the process lives.
struct PlugInBundle {
    std::string path{};
    std::string name{};
    gps::Dictionary info{};
    std::string plugInClass{};
    std::int32_t apiVersion = 0;
    std::vector<Driver> drivers{}; ///< in the plug-in's order; may be empty
    gps::VeloranPlugIn* loader = nullptr;
};

/// The places where the bundle is looked for when none is named: beside the program, as in a build
/// tree, then where the installation puts it, seen from the program.
/// @param program  the program's own file
[[nodiscard]] std::vector<std::string> bundlePlaces(const std::string& program);

/// Finds the bundle to load. @param given  the user's choice, taken as it is
/// @return  its path; none when there is none at any place
[[nodiscard]] std::optional<std::string> findBundle(const std::optional<std::string>& given);

/// Loads the bundle's module and asks its loader everything, in the order that plug-ins expect.
/// @param bundle  out: untouched after a failure
/// @return        one sentence that says what is missing or broken
[[nodiscard]] std::optional<gps::Error> loadBundle(const std::string& path, PlugInBundle& bundle);

/// Asks a loaded bundle again for its drivers, since one may be offered only while there is a
/// device for it. Those of a class that is there already stay as they are.
/// @param bundle  gets the new ones after its own
void addNewDrivers(PlugInBundle& bundle);

} // namespace host
