// SPDX-License-Identifier: MIT
// Splitting takes a good part of the time of reading a file, so it handles eight bytes at a time.

#include "SentenceFields.h"

#include <gps/Error.h>
#include <platform/GPSUtilities/NMEAUtils.h>

#include <bit>
#include <cstring>
#include <utility>

namespace magellan {
namespace {

static_assert(std::endian::native == std::endian::little,
              "separatorsIn() takes the lowest byte of a word for the first one");

constexpr std::uint64_t repeated(std::uint8_t byte) noexcept
{
    return 0x0101010101010101 * std::uint64_t{byte};
}

/// Sets the high bit of each byte that is a "," and clears all other bits.
std::uint64_t separatorsIn(const char* eightBytes) noexcept
{
    std::uint64_t word = 0;
    std::memcpy(&word, eightBytes, sizeof word);
    word ^= repeated(','); // a separator is now a zero byte
    return ~(((word & repeated(0x7F)) + repeated(0x7F)) | word) & repeated(0x80);
}

} // namespace

SentenceFields::SentenceFields(std::string_view body) noexcept : body_(body)
{
    starts_[0] = 0;
    std::size_t i = 0;
    for (; i + sizeof(std::uint64_t) <= body.size(); i += sizeof(std::uint64_t)) {
        for (auto found = separatorsIn(body.data() + i); found != 0; found &= found - 1)
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
