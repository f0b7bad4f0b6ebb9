// SPDX-License-Identifier: MIT
// PlainTextConverter: rewrites texts in the few characters that a receiver can show. Used by
// NameFitting. One thread at a time.

#pragma once

#include <platform/GPSUtilities/CharacterFilter.h>

#include <memory>
#include <string>
#include <string_view>

namespace host {

struct PlainText {
    std::string text;    ///< only characters of the receiver
    std::string dropped; ///< the characters that have no replacement, in their original order
};

/// Replaces accented letters and letters of other scripts by plain Latin ones, and white space of
/// every kind by spaces. Drops any character that the receiver still lacks.
class PlainTextConverter {
public:
    /// @param characters  what the receiver can show; must outlive this object
    explicit PlainTextConverter(const gps::CharacterSet& characters);
    ~PlainTextConverter();
    PlainTextConverter(const PlainTextConverter&) = delete;
    PlainTextConverter& operator=(const PlainTextConverter&) = delete;

    /// Whether the receiver can show a text unchanged.
    [[nodiscard]] bool isPlain(std::string_view text) const noexcept;

    /// Converts a text. Takes time linear in its length.
    [[nodiscard]] PlainText convert(std::string_view text);

private:
    class Romanizer;

    void appendWord(PlainText& plain, std::string_view word);
    void append(PlainText& plain, std::string_view characters) const;

    const gps::CharacterSet& characters_;
    std::unique_ptr<Romanizer> romanizer_; // created on first use: loading its rules is slow
};

} // namespace host
