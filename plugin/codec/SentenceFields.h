// SPDX-License-Identifier: MIT
// SentenceFields: positional access to a sentence body's fields, for the four interpreters. Views
// into the caller's text; nothing is allocated, however long the body. A plain value: any thread
// may hold its own.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace magellan {

class SentenceFields {
public:
    /// Splits a body at every ",": fields keep their text exactly, empty ones included.
    /// Precondition: the body is shorter than 4 GiB and outlives this object.
    explicit SentenceFields(std::string_view body) noexcept;

    /// The fields of a line as read, if it is a valid sentence of the given name; none otherwise.
    [[nodiscard]] static std::optional<SentenceFields> ofSentence(std::string_view line,
                                                                  std::string_view name) noexcept;

    /// How many fields there are; at least 1.
    [[nodiscard]] std::size_t count() const noexcept { return count_; }

    /// A field by its position, from 0.
    /// Precondition: the position is below kReachable.
    /// @throws gps::RangeError  there are not so many fields
    [[nodiscard]] std::string_view at(std::size_t position) const
    {
        if (position >= count_)
            throwRangeError(position);
        return body_.substr(starts_[position], starts_[position + 1] - starts_[position] - 1);
    }

    /// The body from a field to its end, separators included; empty where there are not so many
    /// fields. Precondition: the position is below kReachable.
    [[nodiscard]] std::string_view from(std::size_t position) const noexcept
    {
        return position < count_ ? body_.substr(starts_[position]) : std::string_view{};
    }

    /// Asks for so many fields at once: a reader that does so before it takes anything leaves
    /// nothing half read.
    /// @throws gps::RangeError  there are fewer; it names the first one that is not there
    void require(std::size_t count) const
    {
        if (count_ < count)
            throwRangeError(count_);
    }

    /// Throws what `at` would: for a field that is there but lacks what must be in it.
    [[noreturn]] void throwRangeError(std::size_t position) const;

    static constexpr std::size_t kReachable =
        16; ///< the longest sentence kind, a geocache, has so many

private:
    void addSeparator(std::size_t place) noexcept
    {
        if (count_ <= kReachable)
            starts_[count_] = static_cast<std::uint32_t>(place + 1);
        ++count_;
    }

    std::string_view body_;
    std::size_t count_ = 1;
    std::array<std::uint32_t, kReachable + 1>
        starts_; // the one behind the last reachable field starts behind its ","
};

} // namespace magellan
