// SPDX-License-Identifier: MIT
// Copies of a value share its array or dictionary until one of them is changed, and a change gives
// that one a new object. So the same address means the same content, as long as a copy is kept.

#include "PlannedTexts.h"

#include <algorithm>
#include <utility>

namespace magellan {
namespace {

bool isSameRecord(const gps::Value& a, const gps::Value& b)
{
    const auto* const record = a.as<gps::Dictionary>();
    return record != nullptr && record == b.as<gps::Dictionary>();
}

/// A list that was split by kind is a new array of the same records.
bool isSameList(const gps::Array& a, const gps::Array& b)
{
    return &a == &b || std::equal(a.begin(), a.end(), b.begin(), b.end(), isSameRecord);
}

} // namespace

void PlannedTexts::clear()
{
    const std::lock_guard lock{mutex_};
    merges_.clear();
    tracks_.clear();
}

void PlannedTexts::add(RecordKind kind, gps::Value records, gps::SharedText present, Merged merged)
{
    const std::lock_guard lock{mutex_};
    merges_.insert_or_assign(kind,
                             Merge{std::move(records), std::move(present), std::move(merged)});
}

std::optional<PlannedTexts::Merged> PlannedTexts::find(RecordKind kind, const gps::Array& records,
                                                       std::string_view present) const
{
    const std::lock_guard lock{mutex_};
    const auto found = merges_.find(kind);
    if (found == merges_.end() || !isSameList(*found->second.records.as<gps::Array>(), records) ||
        found->second.present != present)
        return std::nullopt;
    return found->second.merged;
}

void PlannedTexts::addTrack(const gps::Value& track, gps::SharedText text)
{
    const std::lock_guard lock{mutex_};
    tracks_.insert_or_assign(track.as<gps::Dictionary>(), Track{track, std::move(text)});
}

std::optional<gps::SharedText> PlannedTexts::findTrack(const gps::Value& track) const
{
    const std::lock_guard lock{mutex_};
    const auto found = tracks_.find(track.as<gps::Dictionary>());
    return found != tracks_.end() ? std::optional{found->second.text} : std::nullopt;
}

} // namespace magellan
