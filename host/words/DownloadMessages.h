// SPDX-License-Identifier: MIT
// A download's report in words, for `acquire`, `import` and `watch`. Stateless. [host thread]

#pragma once

#include "host/transfer/DownloadReport.h"
#include "host/words/Message.h"

#include <string>
#include <vector>

namespace host {

struct MessageOptions {
    /// Whether the plug-in's log lines are among the messages. With --verbose they were printed
    /// already.
    bool isLogShown = true;
    bool isDamageAnError = false; ///< damaged lines on the device are errors, not notes
};

/// What went wrong in an operation, or is worth knowing.
[[nodiscard]] std::vector<Message> operationMessages(const OperationReport& report,
                                                     const MessageOptions& options = {});

/// What became of the output file.
[[nodiscard]] std::vector<Message> outputMessages(const OutputReport& report);

/// What the user's choice left out of a download, and where tracks were divided into segments.
[[nodiscard]] std::vector<Message> choiceMessages(const DownloadReport& report);

/// Where tracks were divided into segments; empty if none was.
[[nodiscard]] std::string splitText(const SplitReport& splits);

/// Advice for dates that look 1024 weeks too old; empty if none do.
[[nodiscard]] std::string dateAdvice(const DateReport& report);

} // namespace host
