// SPDX-License-Identifier: MIT
// TransferBar: a bar that shows how far a transfer is. [main loop]

#pragma once

#include <gtkmm.h>

namespace host {

struct TransferProgress;

class TransferBar : public Gtk::ProgressBar {
public:
    TransferBar();

    /// Shows what is being done, and how much of it is done.
    void showProgress(const TransferProgress& progress);
};

} // namespace host
