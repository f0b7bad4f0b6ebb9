// SPDX-License-Identifier: MIT
// RecordKind: which list of a RecordSet a record is in. A value. [any]

#pragma once

namespace host {

enum class RecordKind { kTrack, kRoute, kPoint };

} // namespace host
