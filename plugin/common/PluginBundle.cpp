// SPDX-License-Identifier: MIT

#include "PluginBundle.h"

namespace magellan {

const gps::Bundle& pluginBundle()
{
    // The bundle is that of the file which holds this constant. Without one, every resource is
    // missing.
    static constexpr char kHere = 0;
    static const gps::Bundle* const bundle =
        new gps::Bundle{gps::Bundle::containing(&kHere).value_or(gps::Bundle{""})};
    return *bundle;
}

} // namespace magellan
