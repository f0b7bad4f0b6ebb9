// SPDX-License-Identifier: MIT
// What a transfer is writing is finished, whatever the answer is.

#include "host/window/Closing.h"

#include "host/window/base/Question.h"
#include "host/window/base/Translation.h"

#include <utility>

namespace host {

Closing::Closing(Gtk::Window& window, Handlers handlers)
    : window_(window), handlers_(std::move(handlers))
{
    window_.signal_close_request().connect([this] { return asks(); }, false);
}

bool Closing::isIdle() const
{
    return !handlers_.isTransferring() && !handlers_.isExporting();
}

bool Closing::asks()
{
    if (isIdle() || isRequested_)
        return false;
    const bool isTransfer = handlers_.isTransferring();
    ask(window_, isTransfer ? tr("Stop the Transfer?") : tr("Stop the Export?"),
        isTransfer ? tr("A transfer is running. What is being written now is finished first.")
                   : tr("A file is being written. If you stop now, there is no such file."),
        {.cancel = tr("_Continue"), .accept = tr("_Stop and Close")}, [this, isTransfer] {
            isRequested_ = true;
            handlers_.stop(isTransfer);
            continueWhenIdle();
        });
    return true;
}

bool Closing::continueWhenIdle()
{
    if (isRequested_ && isIdle())
        window_.close();
    return isRequested_;
}

} // namespace host
