// SPDX-License-Identifier: MIT
// Saver: saves what is new on each receiver that appears, into a folder, as `magellangps watch
// --new-only` does, with the same memory of what was saved. Used on the device thread. [host
// thread]

#pragma once

#include "host/bundle/PlugInBundle.h"
#include "host/desktop/Notifier.h"
#include "host/watching/Watcher.h"

#include <atomic>
#include <functional>
#include <string>

namespace host {

/// What happens while everything new is saved.
struct SavingEvent {
    bool isRunning = false; ///< a receiver is being read just now
    std::string text{};     ///< what has ended, in a line; empty: nothing
    bool isError = false;
};

class Saver {
public:
    /// @param folder         where the files go; it is created if it is missing
    /// @param happened       called on the thread of the looks and on those of operations
    /// @param stopRequested  whether the user wants no more, on any of these threads
    Saver(const PlugInBundle& plugIn, const std::string& folder,
          std::function<void(SavingEvent event)> happened, std::function<bool()> stopRequested);

    /// Looks once at the devices that the drivers list, and saves what is new on those that have
    /// appeared. @return  whether any has appeared, so that later looks may find more
    bool look() { return watcher_.look(); }

private:
    [[nodiscard]] WatchRequest requestFor(const std::string& folder,
                                          std::function<bool()> stopRequested);
    void report(const WatchEvent& event);

    std::function<void(SavingEvent event)> happened_;
    std::atomic<bool> isRunning_{false}; // set on the threads of operations, too
    Notifier notifier_;
    Watcher watcher_;
};

} // namespace host
