// SPDX-License-Identifier: MIT
// RecordTicks: which records of a set a user has ticked, and how many. One thread at a time.

#pragma once

#include "host/records/Export.h"
#include "host/records/RecordKind.h"
#include "host/records/RecordSet.h"

#include <cstddef>
#include <vector>

namespace host {

class RecordTicks {
public:
    RecordTicks() = default;

    /// All records of a set are ticked.
    explicit RecordTicks(const RecordSet& set);

    explicit RecordTicks(TickedRecords ticked);

    [[nodiscard]] const TickedRecords& records() const noexcept { return ticked_; }
    [[nodiscard]] std::size_t count() const noexcept { return count_; }
    [[nodiscard]] std::size_t total() const noexcept
    {
        return ticked_.points.size() + ticked_.routes.size() + ticked_.tracks.size();
    }

    /// Precondition for both: the set has that record.
    [[nodiscard]] bool isTicked(RecordKind kind, std::size_t index) const;
    void tick(RecordKind kind, std::size_t index, bool isTicked);

private:
    [[nodiscard]] std::vector<bool>& valuesOf(RecordKind kind);

    TickedRecords ticked_;
    std::size_t count_ = 0;
};

} // namespace host
