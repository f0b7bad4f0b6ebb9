// SPDX-License-Identifier: MIT
// forEachRecord: visits the records in the lists of a data dictionary. RecordSource: the same for
// records that are not in memory. Stateless. [any]

#pragma once

#include <gps/GPSFileDevice.h>
#include <gps/Value.h>

#include <functional>
#include <iterator>
#include <string_view>
#include <utility>

namespace host {

/// Visits each dictionary in the array under a key, in order. Other values in the array are
/// skipped. Visits nothing if the key is missing or its value is not an array.
/// @param data  if const, so are the records
template <typename DictionaryType, typename Visitor>
void forEachRecord(DictionaryType& data, std::string_view key, const Visitor& visit)
{
    auto* const records = data.findArray(key);
    if (records == nullptr)
        return;
    for (auto& value : *records) {
        if (auto* const record = value.template as<gps::Dictionary>())
            visit(*record);
    }
}

/// Moves records to the end of the array under a key. Adds no key for no records.
inline void appendRecords(gps::Dictionary& data, std::string_view key, gps::Array& records)
{
    if (records.empty())
        return;
    if (auto* const list = data.findArray(key))
        list->insert(list->end(), std::make_move_iterator(records.begin()),
                     std::make_move_iterator(records.end()));
    else
        data.set(key, std::move(records));
}

/// The key under which a RecordSource visits a point of the device's files of routes that no route
/// uses.
inline constexpr std::string_view kRoutePointKey = "route point";

/// Calls its argument with each record that a device holds. There may be millions, so they are
/// decoded one by one at each call. Never empty.
using RecordSource = std::function<void(const gps::RecordVisitor& visit)>;

/// The same for the records that a filter chooses.
using ChosenRecordSource =
    std::function<void(const gps::RecordFilter& isChosen, const gps::RecordVisitor& visit)>;

} // namespace host
