// SPDX-License-Identifier: MIT
// RecordRef: a record of a RecordSet. A value. [any]

#pragma once

#include <cstddef>

namespace host {

enum class RecordKind { kTrack, kRoute, kPoint };

struct RecordRef {
    RecordKind kind = RecordKind::kTrack;
    std::size_t index = 0; ///< among the records of its kind

    friend bool operator==(const RecordRef&, const RecordRef&) = default;
};

} // namespace host
