// SPDX-License-Identifier: MIT
// NewRecords: what has to be known about a download of only what is new, so that its records count
// as saved once a file has them. A plain value. [any]

#pragma once

#include "host/records/Export.h"
#include "host/transfer/RecordCounts.h"
#include "host/watching/KnownRecords.h"
#include "host/watching/NewRecordFilter.h"

#include <gps/Error.h>

#include <optional>
#include <string>

namespace host {

struct NewRecords {
    std::string list{};     ///< of the device's saved records: a path
    PassedKeys keys{};      ///< of the records of the download, in their order
    RecordCounts leftOut{}; ///< what was saved before
};

/// The keys of the ticked records.
[[nodiscard]] RecordKeys keysOf(const NewRecords& records, const TickedRecords& ticked);

/// Adds the ticked records to the device's list. Precondition: they are in a file that has its
/// final name. [host thread]
/// @return  why they will count as new again, or why others will
[[nodiscard]] std::optional<gps::Error> noteAsSaved(const NewRecords& records,
                                                    const TickedRecords& ticked);

} // namespace host
