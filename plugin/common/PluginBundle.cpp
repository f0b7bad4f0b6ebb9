// SPDX-License-Identifier: MIT
// Works from wherever the module was loaded, as in tests, which link its objects.

#include "PluginBundle.h"

namespace magellan {

const gps::Bundle& pluginBundle()
{
    // The bundle is the one around the file that contains this constant. Without a bundle, every
    // resource is missing.
    static constexpr char kHere = 0;
    static const gps::Bundle* const bundle =
        new gps::Bundle{gps::Bundle::containing(&kHere).value_or(gps::Bundle{""})};
    return *bundle;
}

} // namespace magellan
