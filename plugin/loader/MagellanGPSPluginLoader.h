// SPDX-License-Identifier: MIT
// MagellanGPSPluginLoader: the plug-in's principal class, which a host asks for the drivers.
// Stateless. [host thread]

#pragma once

#include <gps/VeloranPlugIn.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace magellan {

class MagellanGPSPluginLoader : public gps::VeloranPlugIn {
public:
    [[nodiscard]] bool piInitialize() override { return true; }
    [[nodiscard]] std::string piName() override { return "Magellan GPS PlugIns"; }
    [[nodiscard]] gps::Dictionary piInfo() override;
    [[nodiscard]] std::string piClass() override { return "GPSPlugIn"; }
    [[nodiscard]] std::int32_t piAPIVersion() override { return 1; }

    /// Returns the driver of mounted receivers and the one of serial receivers, in this order, as
    /// far as they can be created; nullopt if neither can, or for another class than "GPSPlugIn".
    [[nodiscard]] std::optional<gps::PlugInEnumerator>
    piGetPlugInsForClass(std::string_view plugInClass) override;

    void piTerminate() override {}
};

} // namespace magellan
