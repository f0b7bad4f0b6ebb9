// SPDX-License-Identifier: MIT
// Makes the data of a send of ticked records, and says what became of each record in a plan.
// Stateless. [any]

#pragma once

#include "host/records/Export.h"
#include "host/records/RecordSet.h"

#include <gps/Value.h>

#include <string>
#include <vector>

namespace host {

/// The data dictionary that a driver gets, like the one that readGpx() makes of a file.
/// Precondition: there are as many ticks as the set has records.
[[nodiscard]] gps::Dictionary sendData(const RecordSet& set, const TickedRecords& ticked);

/// The same for a plan that is not sent: each record has its index in the set, from which
/// plannedRecords() knows it again.
[[nodiscard]] gps::Dictionary numberedSendData(const RecordSet& set, const TickedRecords& ticked);

/// What a plan does with one record.
struct PlannedRecord {
    enum class Fate {
        kNotTicked,
        kSent,
        kPresent, ///< the device has it already
        kEmpty,   ///< a route or a track without points
    };

    Fate fate = Fate::kNotTicked;
    std::string name{}; ///< kSent: its name on the device
    std::vector<std::string>
        changedTexts{}; ///< kSent: keys of those that the device stores changed
};

/// One value for each record of a set, in its order.
struct PlannedRecords {
    std::vector<PlannedRecord> points{};
    std::vector<PlannedRecord> routes{};
    std::vector<PlannedRecord> tracks{};
};

/// @param data  what a plan sends
/// Precondition: it was numberedSendData(set, ticked) before it was fitted to the device.
[[nodiscard]] PlannedRecords plannedRecords(const RecordSet& set, const TickedRecords& ticked,
                                            const gps::Dictionary& data);

} // namespace host
