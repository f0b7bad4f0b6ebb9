// SPDX-License-Identifier: MIT
// Field text: how a record's texts become sentence fields, and fields become texts of a record.
// Shared by all sentence kinds. Stateless. [any]

#pragma once

#include <platform/GPSUtilities/CharacterFilter.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace gps {
class Dictionary;
} // namespace gps

namespace magellan {

class SentenceFields;

/// The 81 characters that receivers can display and store. Neither "," nor "*" is among them, so a
/// filtered text cannot break its sentence.
inline constexpr char kDeviceCharacters[] =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz .0123456789-/'!@#<%^&>()+=:\\";

/// The length, in characters, to which receivers cut the name of a waypoint or route.
inline constexpr std::size_t kLongestName = 20;

/// kDeviceCharacters as a set.
[[nodiscard]] const gps::CharacterSet& deviceCharacterSet();

/// `magellanStringFromDictionary:withKey:andLength:`: the text under a key without the characters
/// that receivers cannot store, then cut to kLongestName characters. `length` is ignored: all
/// receivers have the same limit, and every caller passes it.
[[nodiscard]] std::string magellanStringFromDictionary(const gps::Dictionary& record,
                                                       std::string_view key, int length);

/// `magellanStringFromDictionary:withKey:`: the same, not cut. Returns "" if the key is missing or
/// its value is not a text.
[[nodiscard]] std::string magellanStringFromDictionary(const gps::Dictionary& record,
                                                       std::string_view key);

/// Appends such a text to a sentence, cut to so many characters.
void appendDeviceText(std::string& sentence, const gps::Dictionary& record, std::string_view key,
                      std::size_t longest = std::string::npos);

/// `setInDictionary:forKey:fromIndex:ofArray:`: copies a field into a record if there are at least
/// `index` fields; otherwise does nothing.
/// @throws gps::RangeError  there are exactly `index` fields. Receivers write either all optional
///                          fields of a sentence or none, so one that ends here was truncated
void setInDictionary(gps::Dictionary& record, std::string_view key, std::size_t index,
                     const SentenceFields& fields);

} // namespace magellan
