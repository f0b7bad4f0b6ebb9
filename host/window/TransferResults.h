// SPDX-License-Identifier: MIT
// What the window says when a download, an import, a send or a restore has ended. [main loop]

#pragma once

#include "host/transfer/DeviceRestore.h"
#include "host/window/base/MessageArea.h"
#include "host/window/devices/Receivers.h"
#include "host/window/send/SendWork.h"

#include <glibmm.h>

namespace host {

void showReceived(MessageArea& messages, const ReceivedRecords& received);
void showSent(MessageArea& messages, const SendResult& result, bool isUtc);
void showRestored(MessageArea& messages, const RestoreReport& report);

/// Which records were left out of a download, and how to get them; empty if none were.
[[nodiscard]] Glib::ustring sentenceOnLeftOut(const ReceivedRecords& received);

} // namespace host
