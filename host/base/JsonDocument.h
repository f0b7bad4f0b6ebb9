// SPDX-License-Identifier: MIT
// JSON documents as values. Their members keep the order in which they were added. Stateless. [any]

#pragma once

#include <nlohmann/json.hpp>

#include <optional>

namespace host {

using Json = nlohmann::ordered_json;

/// The value, or null if there is none.
template <typename T> [[nodiscard]] Json orNull(const std::optional<T>& value)
{
    return value ? Json(*value) : Json();
}

} // namespace host
