// SPDX-License-Identifier: MIT
// What a call that meets too few fields says.

#pragma once

#include <gps/Error.h>

#include <cstddef>
#include <string>
#include <utility>

namespace support {

/// The text of the RangeError that a call throws; empty when it throws none.
template <typename Call> std::string rangeErrorOf(Call&& call)
{
    try {
        std::forward<Call>(call)();
    } catch (const gps::RangeError& error) {
        return error.what();
    }
    return {};
}

/// The text for the first field that a sentence lacks which has only so many.
inline std::string firstMissing(const std::string& sentence, std::size_t count)
{
    return gps::RangeError{sentence, count, count}.what();
}

} // namespace support
