// SPDX-License-Identifier: MIT
// Where the number of bytes is not known, the bar only shows that something happens.

#include "host/window/base/TransferBar.h"

#include "host/transfer/TransferProgress.h"
#include "host/words/ProgressText.h"

namespace host {

TransferBar::TransferBar()
{
    set_show_text(true);
    set_ellipsize(Pango::EllipsizeMode::END);
}

void TransferBar::showProgress(const TransferProgress& progress)
{
    set_text(progressText(progress));
    if (progress.totalBytes > 0)
        set_fraction(static_cast<double>(progress.bytes) /
                     static_cast<double>(progress.totalBytes));
    else if (progress.totalRecords > 0)
        set_fraction(static_cast<double>(progress.records) /
                     static_cast<double>(progress.totalRecords));
    else
        pulse();
}

} // namespace host
