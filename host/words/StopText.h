// SPDX-License-Identifier: MIT
// What is said of a send or a restore that the user has stopped. Stateless. [any]

#pragma once

#include "host/base/Translation.h"

#include <string>

namespace host {

/// What is said if nothing was written.
[[nodiscard]] inline std::string stoppedSendText()
{
    return tr("The send was stopped before anything was written: every file of the device is as it "
              "was.");
}

/// The same of a restore.
[[nodiscard]] inline std::string stoppedRestoreText()
{
    return tr("The restore was stopped before anything was written: every file of the device is as "
              "it was.");
}

} // namespace host
