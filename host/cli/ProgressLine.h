// SPDX-License-Identifier: MIT
// ProgressLine: one line on a terminal that shows how far an operation is, printed over again and
// again. Fed by the progress callback of transfer/. One thread at a time.

#pragma once

#include "host/options/Options.h"
#include "host/transfer/TransferProgress.h"

namespace host {

/// Whether to show a progress line: the user wants neither quiet nor the log, and standard error is
/// a terminal that can print over a line.
/// @param isStandardOutputBusy  whether the operation writes to the standard output meanwhile: no
///                              line is shown if that is a terminal, too
[[nodiscard]] bool canShowProgress(const GlobalOptions& options, bool isStandardOutputBusy);

/// Never waits for the terminal: text that it does not accept at once is lost.
class ProgressLine {
public:
    /// @param isShown  false: nothing is printed at all
    explicit ProgressLine(bool isShown);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// Prints the line, or removes it once the operation has finished.
    void show(const TransferProgress& progress) const;

    /// For a request of transfer/; empty if nothing is printed. Refers to this object.
    [[nodiscard]] ProgressCallback callback() const;

private:
    int terminal_; // an open file description of our own; -1: nothing is printed
};

} // namespace host
