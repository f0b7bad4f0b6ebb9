// SPDX-License-Identifier: MIT
// Compares the whole name: a user's file may begin in the same way.

#include "host/files/TemporaryName.h"

#include <platform/System/AtomicFile.h>

namespace host {

bool isTemporaryName(std::string_view name) noexcept
{
    if (name == gps::kTemporaryName)
        return true;
    if (!name.starts_with(kHiddenPrefix))
        return false;
    const auto numbers = name.substr(kHiddenPrefix.size());
    return numbers.find('-') != std::string_view::npos &&
           numbers.find_first_not_of("0123456789-") == std::string_view::npos;
}

} // namespace host
