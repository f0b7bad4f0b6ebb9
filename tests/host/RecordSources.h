// SPDX-License-Identifier: MIT
// A data dictionary as a source of records, as a device's snapshot is one.

#pragma once

#include "host/fitting/RecordList.h"

#include <gps/GPSFileDevice.h>

#include <string_view>

namespace support {

inline void visitRecords(const gps::Dictionary& data, const gps::RecordVisitor& visit)
{
    for (const auto& entry : data) {
        const std::string_view key = entry.key;
        host::forEachRecord(data, key, [&](const gps::Dictionary& record) { visit(key, record); });
    }
}

inline host::RecordSource recordsOf(const gps::Dictionary& data)
{
    return [data](const gps::RecordVisitor& visit) { visitRecords(data, visit); };
}

} // namespace support
