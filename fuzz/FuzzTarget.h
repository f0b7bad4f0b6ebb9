// SPDX-License-Identifier: MIT
// What every fuzz target shares: its entry and its way of saying that a property does not hold.

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string_view>

/// The entry: called with one input after the other, on one thread.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

/// The input as text.
inline std::string_view textOf(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

/// Ends the process unless the property holds: for the fuzzer, a crash with this input.
inline void require(bool holds, std::string_view property)
{
    if (holds)
        return;
    std::cerr << "does not hold: " << property << '\n';
    std::abort();
}

} // namespace fuzz
