// SPDX-License-Identifier: MIT
// The bundle that this plug-in was loaded from: its resources, views and translated texts. [any]

#pragma once

#include <platform/System/Bundle.h>

namespace magellan {

/// Located at the first call and never destroyed.
[[nodiscard]] const gps::Bundle& pluginBundle();

} // namespace magellan
