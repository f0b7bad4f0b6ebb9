// SPDX-License-Identifier: MIT
// Closing: asks before a window closes in which something is running, and closes it once nothing
// is. [main loop]

#pragma once

#include <functional>

#include <gtkmm.h>

namespace host {

class Closing {
public:
    struct Handlers {
        std::function<bool()> isTransferring;
        std::function<bool()> isExporting;
        std::function<void(bool isTransfer)> stop; ///< a transfer, or an export
    };

    /// Answers the window's requests to close from now on.
    Closing(Gtk::Window& window, Handlers handlers);

    /// Closes the window if the user has asked for it and nothing is running any more. To be called
    /// whenever something has ended.
    /// @return  whether the user has asked for it
    bool continueWhenIdle();

    /// Keeps the window open, although the user has asked for its end.
    void giveUp() noexcept { isRequested_ = false; }

private:
    [[nodiscard]] bool isIdle() const;
    [[nodiscard]] bool asks();

    Gtk::Window& window_;
    Handlers handlers_;
    bool isRequested_ = false; // something was running
};

} // namespace host
