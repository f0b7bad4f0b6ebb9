// SPDX-License-Identifier: MIT
// A download's report in words, for `acquire`, `import` and `watch`. Stateless. [host thread]

#pragma once

#include "host/cli/Message.h"
#include "host/transfer/DownloadReport.h"

#include <string>
#include <vector>

namespace host {

/// What went wrong in an operation, or is worth knowing.
/// @param isLogShown  whether the plug-in's log lines are among the messages; with --verbose they
///                    were printed already
[[nodiscard]] std::vector<Message> operationMessages(const OperationReport& report,
                                                     bool isLogShown);

/// What became of the output file.
[[nodiscard]] std::vector<Message> outputMessages(const OutputReport& report);

/// Advice for dates that look 1024 weeks too old; empty if none do.
[[nodiscard]] std::string dateAdvice(const DateReport& report);

} // namespace host
