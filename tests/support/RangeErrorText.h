// SPDX-License-Identifier: MIT
// The texts of RangeErrors, thrown and expected.

#pragma once

#include <gps/Error.h>

#include <cstddef>
#include <string>
#include <utility>

namespace support {

/// The text of the RangeError that a call throws; empty if it does not throw.
template <typename Call> std::string rangeErrorOf(Call&& call)
{
    try {
        std::forward<Call>(call)();
    } catch (const gps::RangeError& error) {
        return error.what();
    }
    return {};
}

/// The text for a sentence with too few fields, which names the first missing one.
inline std::string firstMissing(const std::string& sentence, std::size_t count)
{
    return gps::RangeError{sentence, count, count}.what();
}

} // namespace support
