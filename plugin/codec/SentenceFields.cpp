// SPDX-License-Identifier: MIT
// Splitting takes a good part of the time of reading a file, so it handles eight bytes at a time.

#include "SentenceFields.h"

#include <gps/EightBytes.h>
#include <gps/Error.h>
#include <platform/GPSUtilities/NMEAUtils.h>

#include <bit>
#include <utility>

namespace magellan {

SentenceFields::SentenceFields(std::string_view body) noexcept : body_(body)
{
    starts_[0] = 0;
    std::size_t i = 0;
    for (; i + sizeof(std::uint64_t) <= body.size(); i += sizeof(std::uint64_t)) {
        auto found = gps::matchesIn(gps::readEight(body.data() + i), ',');
        for (; found != 0; found &= found - 1)
            addSeparator(i + static_cast<std::size_t>(std::countr_zero(found)) / 8);
    }
    for (; i < body.size(); ++i) {
        if (body[i] == ',')
            addSeparator(i);
    }
    // As if a separator followed the body, so that at() needs no special case for the last field.
    if (count_ <= kReachable)
        starts_[count_] = static_cast<std::uint32_t>(body.size() + 1);
}

std::optional<SentenceFields> SentenceFields::ofBody(std::string_view body,
                                                     std::string_view name) noexcept
{
    if (!body.starts_with(name) || (body.size() > name.size() && body[name.size()] != ','))
        return std::nullopt;
    return std::optional<SentenceFields>{std::in_place, body}; // built in place: it is large
}

std::optional<SentenceFields> SentenceFields::ofSentence(std::string_view line,
                                                         std::string_view name) noexcept
{
    const auto body = gps::NMEAUtils::checkAndTrimNMEASentence(line);
    if (!body)
        return std::nullopt;
    return ofBody(*body, name);
}

void SentenceFields::throwRangeError(std::size_t index) const
{
    throw gps::RangeError(at(0), index, count_);
}

} // namespace magellan
