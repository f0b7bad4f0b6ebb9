// SPDX-License-Identifier: MIT
// The records in a data dictionary's lists. Stateless: [any] thread.

#pragma once

#include <gps/Value.h>

#include <string_view>

namespace host {

/// Visits each dictionary in the array under a key; there are none where it is missing or no array.
/// @param data  may be const, and so are the records then
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

} // namespace host
