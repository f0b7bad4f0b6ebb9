// SPDX-License-Identifier: MIT
// Makes the data of a send of ticked records, and says what became of each record in a plan.
// Stateless. [any]

#pragma once

#include "host/records/Export.h"
#include "host/records/RecordSet.h"
#include "host/transfer/MissingRecords.h"

#include <gps/Value.h>

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
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
        kPresent,  ///< the device has it already
        kRepeated, ///< an earlier record that is the same is sent
        kEmpty,    ///< a route or a track without points
        kMissing,  ///< the device would not have it
        kPartial,  ///< the device would not have all of its points
    };

    Fate fate = Fate::kNotTicked;
    std::string name{}; ///< kSent, kPartial: its name on the device
    std::vector<std::string>
        changedTexts{}; ///< kSent, kPartial: keys of those that the device stores changed
};

/// One value for each record of a set, in its order.
struct PlannedRecords {
    std::vector<PlannedRecord> points{};
    std::vector<PlannedRecord> routes{};
    std::vector<PlannedRecord> tracks{};
};

/// The records that a plan leaves out because it has the same ones already.
class RepeatedIndices {
public:
    struct Repeat {
        std::size_t index; ///< of the record among those of its kind
        std::size_t first; ///< likewise: the record that it repeats
    };

    /// Adds one of numbered data: a RepeatVisitor.
    void add(std::string_view key, const gps::Dictionary& record, const gps::Dictionary& first);

    /// @param key  of the list in the data
    [[nodiscard]] const std::vector<Repeat>& of(std::string_view key) const;

private:
    static std::size_t kindOf(std::string_view key) noexcept;

    std::array<std::vector<Repeat>, 3> repeats_; // waypoints, routes, tracks
};

/// @param data      what a plan sends
/// @param repeated  what was left out of it as repeated
/// @param missing   what would not be on the device, of this data
/// Precondition: it was numberedSendData(set, ticked) before it was fitted to the device.
[[nodiscard]] PlannedRecords plannedRecords(const RecordSet& set, const TickedRecords& ticked,
                                            const gps::Dictionary& data,
                                            const RepeatedIndices& repeated = {},
                                            const std::vector<MissingRecord>& missing = {});

} // namespace host
