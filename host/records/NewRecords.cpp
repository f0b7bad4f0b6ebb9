// SPDX-License-Identifier: MIT
// A record that is not noted is shown again, which is better than one that nobody sees again.

#include "host/records/NewRecords.h"

#include <cstddef>
#include <vector>

namespace host {
namespace {

// Where there are not as many keys as records, nobody knows which belong together.
void addTicked(const std::vector<std::string>& keys, const std::vector<bool>& isTicked,
               RecordKeys& ticked)
{
    if (keys.size() != isTicked.size())
        return;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (isTicked[i])
            ticked.insert(keys[i]);
    }
}

} // namespace

RecordKeys keysOf(const NewRecords& records, const TickedRecords& ticked)
{
    RecordKeys keys;
    addTicked(records.keys.points, ticked.points, keys);
    addTicked(records.keys.routes, ticked.routes, keys);
    addTicked(records.keys.tracks, ticked.tracks, keys);
    return keys;
}

std::optional<gps::Error> noteAsSaved(const NewRecords& records, const TickedRecords& ticked)
{
    KnownRecords known{records.list};
    auto unusable = known.load(); // others may have added records meanwhile
    auto failure = known.add(keysOf(records, ticked));
    return failure ? failure : unusable;
}

} // namespace host
