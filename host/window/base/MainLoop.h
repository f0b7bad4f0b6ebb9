// SPDX-License-Identifier: MIT
// The way from other threads to the widgets: what they have to say runs on the main loop's thread.

#pragma once

#include <functional>

namespace host {

/// Calls a function on the main loop's thread, soon: after input and drawing that is due, and after
/// the functions that were handed over before. [any]
void onMainLoop(std::function<void()> function);

/// The same before the next frame is drawn, even while one frame follows the other. For what is to
/// be seen in it; anything that takes long would delay frames. [any]
void beforeNextFrame(std::function<void()> function);

} // namespace host
