// SPDX-License-Identifier: MIT
// Looks before it changes anything: a list that is changed is copied first if somebody shares it.

#include "host/fitting/EmptyRecords.h"

#include "host/base/RecordText.h"

#include <algorithm>
#include <utility>

namespace host {
namespace {

bool isEmpty(const gps::Value& element)
{
    const auto* const record = element.as<gps::Dictionary>();
    if (record == nullptr)
        return false;
    const auto* const points = record->findArray("points");
    return points == nullptr || points->empty();
}

void addEmpty(const gps::Dictionary& data, std::string_view kind, std::vector<EmptyRecord>& found)
{
    const auto* const records = data.findArray(kind);
    if (records == nullptr)
        return;
    for (const auto& element : *records) {
        if (isEmpty(element))
            found.push_back({kind, std::string{textIn(*element.as<gps::Dictionary>(), "name")}});
    }
}

void removeEmpty(gps::Dictionary& data, std::string_view kind)
{
    const auto* const records = std::as_const(data).findArray(kind);
    if (records == nullptr || std::none_of(records->begin(), records->end(), isEmpty))
        return;
    auto& rest = *data.findArray(kind);
    std::erase_if(rest, isEmpty);
    if (rest.empty())
        data.remove(kind);
}

} // namespace

std::vector<EmptyRecord> emptyRecordsIn(const gps::Dictionary& data)
{
    std::vector<EmptyRecord> found;
    addEmpty(data, "route", found);
    addEmpty(data, "track", found);
    return found;
}

std::vector<EmptyRecord> removeEmptyRecords(gps::Dictionary& data)
{
    auto removed = emptyRecordsIn(data);
    removeEmpty(data, "route");
    removeEmpty(data, "track");
    return removed;
}

} // namespace host
