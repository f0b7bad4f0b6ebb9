// SPDX-License-Identifier: MIT
// Takes an input apart into numbers and texts, for targets whose input is not a text. One thread.

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace fuzz {

/// When the input is used up, numbers are 0 and texts are empty.
class Bytes {
public:
    explicit Bytes(std::string_view input) : rest_(input) {}

    [[nodiscard]] bool isEmpty() const noexcept { return rest_.empty(); }

    /// A number of any value that its type can have.
    template <typename Number> [[nodiscard]] Number number()
    {
        Number value{};
        const auto size = std::min(sizeof value, rest_.size());
        std::memcpy(&value, rest_.data(), size);
        rest_.remove_prefix(size);
        return value;
    }

    /// A number below a limit.
    [[nodiscard]] std::size_t below(std::size_t limit) { return number<std::uint8_t>() % limit; }

    /// A text of up to 255 bytes, whose length is the next byte.
    [[nodiscard]] std::string_view text()
    {
        const auto size = std::min<std::size_t>(number<std::uint8_t>(), rest_.size());
        const auto text = rest_.substr(0, size);
        rest_.remove_prefix(size);
        return text;
    }

private:
    std::string_view rest_;
};

} // namespace fuzz
