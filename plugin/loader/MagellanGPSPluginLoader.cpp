// SPDX-License-Identifier: MIT
// The information dictionary and the creation of the drivers.

#include "MagellanGPSPluginLoader.h"

#include "../fsdevice/MagellanGPSPlugin.h"
#include "../serialdevice/MagellanSerialGPSPlugin.h"

#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace magellan {

gps::Dictionary MagellanGPSPluginLoader::piInfo()
{
    return {
        {"Copyright", "© 2026 Orvane"},
        {"Description", "Used to read GPS information from Magellan GPS receivers."},
        {"FeedbackURL", "https://www.orvane.example/support"},
        {"VersionCheck", "https://www.orvane.example/versioncheck.php?package=MagellanGPSPlugin"},
        {"Version", "1.5"},
        {"GPSPlugIn:Manufacturer", "Magellan"}};
}

std::optional<gps::PlugInEnumerator>
MagellanGPSPluginLoader::piGetPlugInsForClass(std::string_view plugInClass)
{
    std::vector<std::shared_ptr<gps::GPSPlugInProtocol>> drivers;
    if (auto driver = MagellanGPSPlugin::getPluginForClass(plugInClass))
        drivers.push_back(std::move(driver));
    if (auto driver = MagellanSerialGPSPlugin::getPluginForClass(plugInClass))
        drivers.push_back(std::move(driver));
    if (drivers.empty())
        return std::nullopt;
    return gps::PlugInEnumerator{std::move(drivers)};
}

} // namespace magellan
