// SPDX-License-Identifier: MIT
// GLib's own function for this is the only one of its kind that any thread may call.

#include "host/window/base/MainLoop.h"

#include <memory>
#include <utility>

#include <glib.h>

namespace host {
namespace {

using Function = std::function<void()>;

gboolean call(gpointer data)
{
    (*static_cast<Function*>(data))();
    return G_SOURCE_REMOVE;
}

void destroy(gpointer data)
{
    const std::unique_ptr<Function> owned{static_cast<Function*>(data)};
}

void callAt(int priority, std::function<void()> function)
{
    auto owned = std::make_unique<Function>(std::move(function));
    g_idle_add_full(priority, call, owned.release(), destroy);
}

} // namespace

void onMainLoop(std::function<void()> function)
{
    callAt(G_PRIORITY_DEFAULT_IDLE, std::move(function));
}

void beforeNextFrame(std::function<void()> function)
{
    callAt(G_PRIORITY_HIGH_IDLE, std::move(function));
}

} // namespace host
