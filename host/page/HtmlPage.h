// SPDX-License-Identifier: MIT
// The page around the data: what the files under page/ say, put together when the program is built.
// [any] thread.

#pragma once

#include <string_view>

namespace host {

/// Everything up to the JSON text, and everything after it.
[[nodiscard]] std::string_view pageHead() noexcept;
[[nodiscard]] std::string_view pageFoot() noexcept;

} // namespace host
