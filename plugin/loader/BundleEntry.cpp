// SPDX-License-Identifier: MIT
// The module's entry point, which a host looks up by name after loading the bundle.

#include "MagellanGPSPluginLoader.h"

#include <string_view>

extern "C" [[gnu::visibility("default")]] gps::VeloranPlugIn*
VeloranPlugInPrincipalClass(const char* className);

gps::VeloranPlugIn* VeloranPlugInPrincipalClass(const char* className)
{
    // Never destroyed: a host may use it until the process exits.
    static auto* const loader = new magellan::MagellanGPSPluginLoader;
    return className == std::string_view{"MagellanGPSPluginLoader"} ? loader : nullptr;
}
