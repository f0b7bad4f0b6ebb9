// SPDX-License-Identifier: MIT
// Download: what acquire and import share - operations run one after another, their records written to where the user wants
// them, and a verdict on the whole. [host thread]

#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/bundle/PlugInBundle.h"
#include "host/cli/Console.h"
#include "host/cli/ExitStatus.h"
#include "host/cli/Options.h"
#include "host/cli/Progress.h"
#include "host/formats/OutputFile.h"
#include "host/operations/Operation.h"

namespace host {

class Download {
public:
    /// @param options  last as long as this object
    Download(const Options& options, const Console& console);

    /// Opens the outputs, before anything is asked of a driver.
    [[nodiscard]] std::optional<gps::Error> open();

    /// Runs one operation and tells the user what went wrong in it.
    void run(gps::GPSPlugInProtocol& driver, const gps::Dictionary& driverOptions);

    /// Ends the outputs: whole under their name, or what arrived as a partial file.
    [[nodiscard]] ExitStatus finish();

private:
    void consume(const EventBatch& batch);
    void judge(const Outcome& outcome, const std::vector<gps::TransferKind>& requested, bool isImport);
    void judgeLoggedErrors(const Outcome& outcome, bool foldersCount);
    void judgeMissing(const std::vector<gps::TransferKind>& missing);
    void showLog(const Outcome& outcome, bool isNeeded) const;
    void finishFile();
    void fail(const std::optional<gps::Error>& failure);

    const Options& options_;
    const Console& console_;
    Progress progress_;
    Output standardOutput_;
    std::optional<OutputFile> file_;
    std::unique_ptr<Writer> fileWriter_; // null without an output file
    std::unique_ptr<Writer> tellWriter_; // event lines or the summary on the standard output; null: neither
    bool hasArrived_ = false;            // a transfer began
    bool isIncomplete_ = false;
    bool hasFailed_ = false;
};

} // namespace host
