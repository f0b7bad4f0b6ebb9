// SPDX-License-Identifier: MIT
// Layout: the distances between widgets.

#pragma once

namespace host {

inline constexpr int kGap = 12;     // pixels: between groups, and around the content of a page
inline constexpr int kSmallGap = 6; // pixels: between what belongs together

} // namespace host
