// SPDX-License-Identifier: MIT
// Writes ticked records of a RecordSet to a file, in any of the output formats. Stateless. [any]

#pragma once

#include "host/formats/Formats.h"
#include "host/records/RecordSet.h"
#include "host/transfer/OperationWatch.h"
#include "host/transfer/TransferProgress.h"

#include <gps/Error.h>

#include <optional>
#include <string>
#include <vector>

namespace host {

/// Which records of a set a user has ticked: one truth value each, in the set's order.
struct TickedRecords {
    std::vector<bool> points{};
    std::vector<bool> routes{};
    std::vector<bool> tracks{};

    friend bool operator==(const TickedRecords& a, const TickedRecords& b) = default;

    /// All records of a set.
    [[nodiscard]] static TickedRecords all(const RecordSet& set);
};

/// Passes the ticked records on as a driver would report them, kind by kind.
/// Precondition: there are as many values as the set has records.
void replay(const RecordSet& set, const TickedRecords& ticked, Writer& writer);

struct ExportRequest {
    std::string path{};
    const Format* format = nullptr; ///< required
    RecordOrigin origin{};
    ProgressCallback progress{}; ///< a few times a second, on the thread of the export
    StopQuery stopRequested{};   ///< asked as often
};

struct ExportReport {
    std::optional<gps::Error> error{};
    bool isStopped = false;
    std::string remark{}; ///< what the format left out, in one sentence; empty: nothing

    /// Whether there is a file; if not, an older one is as it was.
    [[nodiscard]] bool isComplete() const { return !error && !isStopped; }
};

/// Writes the ticked records to a file, which gets its name only when it is complete.
[[nodiscard]] ExportReport exportRecords(const RecordSet& set, const TickedRecords& ticked,
                                         const ExportRequest& request);

} // namespace host
