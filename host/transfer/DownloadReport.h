// SPDX-License-Identifier: MIT
// DownloadReport: what happened in a download, as plain values. Front ends turn it into words and,
// on the command line, an exit status. A plain value: any thread may hold its own.

#pragma once

#include "host/transfer/ChoiceFilter.h"
#include "host/transfer/OperationReport.h"
#include "host/transfer/RecordCounts.h"

#include <gps/Error.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// What became of the output file.
struct OutputReport {
    enum class State {
        kNone,     ///< no file was requested or made; an older file is as it was
        kComplete, ///< written under its final name
        kPartial,  ///< written under another name; an older file is as it was
    };

    State state = State::kNone;
    std::string path{};   ///< of the file that was made; empty if there is none, or if a partial
                          ///< result went straight to a pipe, a device or the standard output
    std::string remark{}; ///< what the format left out, in one sentence; empty: nothing
    std::optional<gps::Error> error{}; ///< why the file could not be opened or written
};

/// What the date rule did.
struct DateReport {
    std::size_t adjusted = 0; ///< points whose time was changed

    /// The newest time, if no adjustment was requested although even this one looks 1024 weeks too
    /// old.
    std::optional<std::int64_t> suspectNewest{};
};

/// What the request's filters left out. Whoever made the filters fills it in.
struct FilterReport {
    LeftOutRecords choice{};
    RecordCounts savedBefore{};
};

/// Where tracks were divided into segments in the output file.
struct SplitReport {
    std::size_t tracks = 0; ///< that have a gap
    std::size_t gaps = 0;
    bool areJumps = true; ///< all of them are impossible jumps
};

struct DownloadReport {
    /// One for each operation that was run, in order; empty if the output could not be opened.
    std::vector<OperationReport> operations{};
    RecordCounts received{}; ///< from the driver, without repeats
    RecordCounts chosen{};   ///< those that passed the request's filters
    FilterReport leftOut{};
    RecordCounts written{}; ///< to the output file
    SplitReport splits{};
    DateReport dates{};
    OutputReport output{};

    /// Whether any records may have arrived.
    [[nodiscard]] bool hasReceived() const;

    /// Whether everything arrived that was requested and that the device can give, whatever became
    /// of the output file.
    [[nodiscard]] bool isComplete() const;

    /// Whether the user stopped an operation.
    [[nodiscard]] bool isInterrupted() const;

    /// Whether lines on the device or values in map files are damaged, which nobody can get.
    [[nodiscard]] bool hasDamagedLines() const;

    [[nodiscard]] bool succeeded() const { return isComplete() && !output.error; }
};

} // namespace host
