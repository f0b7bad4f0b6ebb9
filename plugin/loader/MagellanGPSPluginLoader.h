// SPDX-License-Identifier: MIT
// The plug-in's principal class: the first that a host asks. No state. [host thread]

#pragma once

#include <gps/VeloranPlugIn.h>

namespace magellan {

class MagellanGPSPluginLoader : public gps::VeloranPlugIn {
public:
    [[nodiscard]] bool piInitialize() override { return true; }
    [[nodiscard]] std::string piName() override { return "Magellan GPS PlugIns"; }
    [[nodiscard]] gps::Dictionary piInfo() override;
    [[nodiscard]] std::string piClass() override { return "GPSPlugIn"; }
    [[nodiscard]] std::int32_t piAPIVersion() override { return 1; }

    /// The driver of mounted receivers, then the one for serial ports; whichever cannot be made is
    /// left out.
    [[nodiscard]] std::optional<gps::PlugInEnumerator>
    piGetPlugInsForClass(std::string_view plugInClass) override;

    void piTerminate() override {}
};

} // namespace magellan
