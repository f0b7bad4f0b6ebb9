// SPDX-License-Identifier: MIT
// The log lines that the list makers and the track writer share. [any]

#pragma once

#include <string_view>

namespace gps {
class Value;
} // namespace gps

namespace magellan {

/// Logs "KIND NAME contains no point --", a line break and the whole record.
void logMissingPoint(std::string_view kind, const gps::Value& record);

/// Logs "failed to create sentence for list from" and the record.
void logFailedSentence(const gps::Value& record);

} // namespace magellan
