// SPDX-License-Identifier: MIT
// PlainTexts: texts in the few characters that a device has. One thread at a time.

#pragma once

#include <platform/GPSUtilities/CharacterFilter.h>

#include <memory>
#include <string>
#include <string_view>

namespace host {

struct PlainText {
    std::string text;    ///< all of it in the device's characters
    std::string dropped; ///< the characters that have no counterpart among them, in their order
};

/// Writes letters of other scripts and accented ones in plain Latin letters, white space of every
/// kind as spaces, and drops what the device lacks even so. Time is linear in a text's length.
class PlainTexts {
public:
    explicit PlainTexts(const gps::CharacterSet& characters);
    ~PlainTexts();
    PlainTexts(const PlainTexts&) = delete;
    PlainTexts& operator=(const PlainTexts&) = delete;

    /// Whether a text is in the device's characters as it stands.
    [[nodiscard]] bool isPlain(std::string_view text) const noexcept;

    [[nodiscard]] PlainText of(std::string_view text);

private:
    class Romanizer;

    void appendWord(PlainText& plain, std::string_view word);
    void append(PlainText& plain, std::string_view characters) const;

    const gps::CharacterSet& characters_;
    std::unique_ptr<Romanizer> romanizer_; // made when the first text needs it: that takes a while
};

} // namespace host
