// SPDX-License-Identifier: MIT
// The bundle that this plug-in was loaded from: its resources and texts. [any] thread.

#pragma once

#include <platform/System/Bundle.h>

namespace magellan {

/// Found at the first call, and kept until the process ends.
[[nodiscard]] const gps::Bundle& pluginBundle();

} // namespace magellan
