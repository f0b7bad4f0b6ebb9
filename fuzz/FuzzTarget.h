// SPDX-License-Identifier: MIT
// Included by every fuzz target: the entry point, and the check of a property. One thread.

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string_view>

/// The entry point of a target. Called with one input after another, on one thread.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

/// The input as text.
inline std::string_view textOf(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

/// Aborts the process unless the property holds. The fuzzer reports that as a crash on this input.
inline void require(bool holds, std::string_view property)
{
    if (holds)
        return;
    std::cerr << "violated: " << property << '\n';
    std::abort();
}

} // namespace fuzz
