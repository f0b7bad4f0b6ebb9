// SPDX-License-Identifier: MIT
// A data dictionary as a source of records, as a device's snapshot is one.

#pragma once

#include "host/base/RecordText.h"
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

/// Visits the points of the records: of a waypoint its own, of a route or a track those in its
/// list.
inline void visitPoints(const gps::Dictionary& data, const gps::PointVisitor& visit)
{
    visitRecords(data, [&visit](std::string_view key, const gps::Dictionary& record) {
        const auto visitPoint = [&](const gps::Dictionary& withPoint) {
            if (const auto* const point = gps::findPoint(withPoint))
                visit(key, *point);
        };
        visitPoint(record);
        host::forEachRecord(record, "points", visitPoint);
    });
}

inline void visitChosenRecords(const gps::Dictionary& data, const gps::RecordFilter& isChosen,
                               const gps::RecordVisitor& visit)
{
    visitRecords(data, [&](std::string_view key, const gps::Dictionary& record) {
        if (isChosen(key, host::textIn(record, "name")))
            visit(key, record);
    });
}

inline host::ChosenRecordSource chosenRecordsOf(const gps::Dictionary& data)
{
    return [data](const gps::RecordFilter& isChosen, const gps::RecordVisitor& visit) {
        visitChosenRecords(data, isChosen, visit);
    };
}

inline host::RecordSource recordsOf(const gps::Dictionary& data)
{
    return [data](const gps::RecordVisitor& visit) { visitRecords(data, visit); };
}

} // namespace support
