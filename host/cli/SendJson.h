// SPDX-License-Identifier: MIT
// SendJson: a send's plan and report as the JSON document of --json, described in docs/json.md.
// Stateless. [host thread]

#pragma once

#include "host/cli/ExitStatus.h"
#include "host/transfer/Send.h"
#include "host/words/Message.h"

#include <string>
#include <vector>

namespace host {

/// The document on one line, with its line end.
/// @param send      of a send that ended before it was prepared: without a device
/// @param report    of a dry run: of a send that was not run
/// @param messages  what is printed on standard error
[[nodiscard]] std::string sendJson(const PreparedSend& send, const SendReport& report,
                                   const std::vector<Message>& messages, ExitStatus status);

} // namespace host
