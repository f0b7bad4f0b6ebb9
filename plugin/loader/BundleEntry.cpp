// SPDX-License-Identifier: MIT
// The module's entry point, which a host looks up by name after loading the bundle.

#include "../common/PluginBundle.h"
#include "MagellanGPSPluginLoader.h"

#include <string_view>

extern "C" [[gnu::visibility("default")]] gps::VeloranPlugIn*
VeloranPlugInPrincipalClass(const char* className);

gps::VeloranPlugIn* VeloranPlugInPrincipalClass(const char* className)
{
    // A module that was loaded by a relative path can be found only until the host changes its
    // working directory.
    (void)magellan::pluginBundle();
    // Never destroyed: a host may use it until the process exits.
    static auto* const loader = new magellan::MagellanGPSPluginLoader;
    constexpr std::string_view kLoaderClass = "MagellanGPSPluginLoader";
    return className != nullptr && className == kLoaderClass ? loader : nullptr;
}
