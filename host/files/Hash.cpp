// SPDX-License-Identifier: MIT
// FNV-1a needs no table, and detects the damage that disks and half-written files show.

#include "host/files/Hash.h"

#include "host/base/Text.h"

#include <cstddef>
#include <cstdint>

namespace host {
namespace {

constexpr std::uint64_t kFnvBasis = 14695981039346656037U;
constexpr std::uint64_t kFnvPrime = 1099511628211U;
constexpr std::size_t kHashLength = 16;

} // namespace

std::string hashOf(std::string_view bytes)
{
    std::uint64_t hash = kFnvBasis;
    for (const char byte : bytes)
        hash = (hash ^ static_cast<unsigned char>(byte)) * kFnvPrime;
    std::string text(kHashLength, '0');
    for (auto digit = text.rbegin(); digit != text.rend(); ++digit, hash >>= 4)
        *digit = kHexDigits[hash & 15];
    return text;
}

bool isHash(std::string_view text) noexcept
{
    return text.size() == kHashLength &&
           text.find_first_not_of(kHexDigits) == std::string_view::npos;
}

} // namespace host
