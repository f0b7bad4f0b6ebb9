// SPDX-License-Identifier: MIT
// SentenceFields: the comma-separated fields of one sentence, accessed by index. The readers split
// each line into one of these and pass it to the sentence kind's own code. Holds views into the
// caller's text and allocates nothing, however long the sentence. A plain value. [any]

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace magellan {

class SentenceFields {
public:
    /// How many fields can be accessed by index: a geocache, the longest sentence kind, has this
    /// many.
    static constexpr std::size_t kReachable = 16;

    /// Splits a body at every ",". Fields keep their text exactly; empty fields count.
    /// Precondition: the body is shorter than 4 GiB and outlives this object.
    explicit SentenceFields(std::string_view body) noexcept;

    /// Splits the body of a checked sentence. Returns nullopt if its first field is not `name`.
    [[nodiscard]] static std::optional<SentenceFields> ofBody(std::string_view body,
                                                              std::string_view name) noexcept;

    /// Checks a line as read ("$", body, "*hh", optional line end) and splits its body. Returns
    /// nullopt if the line is not a valid sentence or its first field is not `name`.
    [[nodiscard]] static std::optional<SentenceFields> ofSentence(std::string_view line,
                                                                  std::string_view name) noexcept;

    /// The number of fields, at least 1. It may exceed kReachable.
    [[nodiscard]] std::size_t count() const noexcept { return count_; }

    /// Returns one field.
    /// Precondition: `index` is below kReachable.
    /// @throws gps::RangeError  the sentence has no field `index`
    [[nodiscard]] std::string_view at(std::size_t index) const
    {
        if (index >= count_)
            throwRangeError(index);
        return body_.substr(starts_[index], starts_[index + 1] - starts_[index] - 1);
    }

    /// Returns the body from the start of one field to its end, separators included; empty if the
    /// sentence has no such field.
    /// Precondition: `index` is below kReachable.
    [[nodiscard]] std::string_view from(std::size_t index) const noexcept
    {
        return index < count_ ? body_.substr(starts_[index]) : std::string_view{};
    }

    /// Checks that there are at least `count` fields. Call it before changing any output, so that a
    /// truncated sentence leaves the outputs untouched.
    /// @throws gps::RangeError  there are fewer; it names the first missing field
    void require(std::size_t count) const
    {
        if (count_ < count)
            throwRangeError(count_);
    }

    /// Throws the error of `at`: for a field that exists but lacks required content.
    [[noreturn]] void throwRangeError(std::size_t index) const;

private:
    void addSeparator(std::size_t offset) noexcept
    {
        if (count_ <= kReachable)
            starts_[count_] = static_cast<std::uint32_t>(offset + 1);
        ++count_;
    }

    std::string_view body_;
    std::size_t count_ = 1;

    // Offset of each reachable field, and of the field or body end that follows the last one.
    // Elements past that are not initialised.
    std::array<std::uint32_t, kReachable + 1> starts_;
};

} // namespace magellan
