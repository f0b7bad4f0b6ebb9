// SPDX-License-Identifier: MIT
// The frame that all sentences have in a text: "$", the body and its checksum. Stateless. [any]

#pragma once

#include <platform/GPSUtilities/NMEAUtils.h>

#include <optional>
#include <string>
#include <utility>

namespace magellan {

/// Appends a sentence to a text, without a line end.
/// @param appendBody  appends the body to the same text; returns whether there is one
/// @return            the same. If there is none, the text is unchanged
template <typename AppendBody> bool appendSentence(std::string& text, AppendBody appendBody)
{
    text += '$';
    const auto body = text.size();
    if (!appendBody()) {
        text.resize(body - 1);
        return false;
    }
    gps::NMEAUtils::appendNMEAChecksum(text, body);
    return true;
}

/// What a function appends to an empty text; nullopt if it returns false.
template <typename Append> std::optional<std::string> appended(Append append)
{
    std::string text;
    return append(text) ? std::optional{std::move(text)} : std::nullopt;
}

} // namespace magellan
