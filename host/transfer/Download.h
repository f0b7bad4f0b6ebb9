// SPDX-License-Identifier: MIT
// Download: what acquire and import share - operations run one after another, their records written
// to where the user wants them, and a verdict on the whole. [host thread]

#pragma once

#include "host/bundle/PlugInBundle.h"
#include "host/cli/Console.h"
#include "host/cli/ExitStatus.h"
#include "host/cli/Options.h"
#include "host/cli/Progress.h"
#include "host/files/OutputFile.h"
#include "host/operations/DateFix.h"
#include "host/operations/Operation.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace host {

class Download {
public:
    /// @param options  last as long as this object
    Download(const DownloadOptions& options, const Console& console);

    /// Puts a writer of its own in front of the file's.
    using Wrap = std::function<std::unique_ptr<Writer>(std::unique_ptr<Writer> fileWriter)>;

    /// Opens the outputs, before anything is asked of a driver.
    [[nodiscard]] std::optional<gps::Error> open(const Wrap& wrap = {});

    /// Runs one operation and tells the user what went wrong in it.
    void run(gps::GPSPlugInProtocol& driver, const gps::Dictionary& driverOptions);

    /// Whether nothing has gone wrong so far.
    [[nodiscard]] bool isWhole() const noexcept { return !hasFailed_ && !isIncomplete_; }

    /// Ends the outputs: whole under their name, or what arrived as a partial file. What is not
    /// finished leaves no file.
    [[nodiscard]] ExitStatus finish();

private:
    void consume(const EventBatch& batch);
    void judge(const Outcome& outcome, const gps::GPSPlugInProtocol& driver,
               const gps::Dictionary& driverOptions);
    void judgePort(const Outcome& outcome, const std::string& port, bool wasHeard);
    void judgeLoggedErrors(const Outcome& outcome, bool foldersCount);
    void judgeMissing(const std::vector<gps::TransferKind>& missing);
    void showLog(const Outcome& outcome, bool isNeeded) const;
    void finishFile();
    void tellOfDates();
    void fail(const std::optional<gps::Error>& failure);

    const DownloadOptions& options_;
    const Console& console_;
    Progress progress_;
    DateFix dates_;
    Output standardOutput_;
    std::optional<OutputFile> file_;
    std::unique_ptr<Writer> fileWriter_; // null without an output file
    std::unique_ptr<Writer>
        tellWriter_;          // event lines or the summary on the standard output; null: neither
    bool hasArrived_ = false; // a transfer began
    bool isIncomplete_ = false;
    bool hasFailed_ = false;
};

/// The whole of a download: an operation for each options dictionary.
[[nodiscard]] ExitStatus download(gps::GPSPlugInProtocol& driver,
                                  const std::vector<gps::Dictionary>& operations,
                                  const DownloadOptions& options, const Console& console);

} // namespace host
