// SPDX-License-Identifier: MIT
// textIn: the texts of records. Used wherever a missing text and an empty one are the same.
// Stateless. [any]

#pragma once

#include <gps/Value.h>

#include <string>
#include <string_view>

namespace host {

/// The text under a key; empty if it is missing or not a text.
[[nodiscard]] inline std::string_view textIn(const gps::Dictionary& record, std::string_view key)
{
    const auto* const text = record.findString(key);
    return text != nullptr ? std::string_view{*text} : std::string_view{};
}

} // namespace host
