// SPDX-License-Identifier: MIT
// DownloadJson: a download's report as the JSON document of --json, described in docs/json.md. Used
// by `acquire` and `import`. Stateless. [host thread]

#pragma once

#include "host/cli/ExitStatus.h"
#include "host/cli/Summary.h"
#include "host/transfer/DownloadReport.h"
#include "host/words/Message.h"

#include <string>
#include <vector>

namespace host {

/// The document on one line, with its line end.
/// @param messages  what is printed on standard error
/// @param list      the records, for --list; otherwise null
[[nodiscard]] std::string downloadJson(const DownloadReport& report,
                                       const std::vector<Message>& messages, ExitStatus status,
                                       const std::vector<SummaryRow>* list = nullptr);

} // namespace host
