// SPDX-License-Identifier: MIT
// The code of an error that may be absent.

#pragma once

#include <gps/Error.h>

#include <cstdint>
#include <optional>

namespace support {

/// The error's code; 0 without an error.
inline std::int32_t codeOf(const std::optional<gps::Error>& error)
{
    return error ? error->code() : 0;
}

} // namespace support
