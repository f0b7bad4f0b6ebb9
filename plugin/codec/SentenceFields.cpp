// SPDX-License-Identifier: MIT

#include "SentenceFields.h"

#include <gps/Error.h>
#include <platform/GPSUtilities/NMEAUtils.h>

#include <bit>
#include <cstring>

namespace magellan {
namespace {

static_assert(std::endian::native == std::endian::little, "the first byte of a word is its lowest");

constexpr std::uint64_t everyByte(std::uint8_t byte) noexcept
{
    return 0x0101010101010101 * std::uint64_t{byte};
}

/// The high bit of each byte that is a ",": eight bytes at a time, since splitting is a good part
/// of reading a file.
std::uint64_t separatorsIn(const char* eightBytes) noexcept
{
    std::uint64_t word = 0;
    std::memcpy(&word, eightBytes, sizeof word);
    word ^= everyByte(',');
    return ~(((word & everyByte(0x7F)) + everyByte(0x7F)) | word) & everyByte(0x80);
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
    // The last field ends where one more separator would stand.
    if (count_ <= kReachable)
        starts_[count_] = static_cast<std::uint32_t>(body.size() + 1);
}

std::optional<SentenceFields> SentenceFields::ofSentence(std::string_view line,
                                                         std::string_view name) noexcept
{
    const auto body = gps::NMEAUtils::checkAndTrimNMEASentence(line);
    if (!body || !body->starts_with(name) ||
        (body->size() > name.size() && (*body)[name.size()] != ','))
        return std::nullopt;
    return SentenceFields{*body};
}

void SentenceFields::throwRangeError(std::size_t position) const
{
    throw gps::RangeError(at(0), position, count_);
}

} // namespace magellan
