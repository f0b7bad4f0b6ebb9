// SPDX-License-Identifier: MIT
// The bundle that this plug-in was loaded from: its resources, views and translated texts. [any]

#pragma once

#include <platform/System/Bundle.h>

namespace magellan {

/// Located at the first call at which it can be found, and never destroyed. Until then the result
/// is a bundle in which every resource is missing.
[[nodiscard]] const gps::Bundle& pluginBundle();

} // namespace magellan
