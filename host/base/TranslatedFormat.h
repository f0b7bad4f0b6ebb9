// SPDX-License-Identifier: MIT
// Sentences with values in them, in the user's language. What a translator has written cannot be
// checked when the program is built: one that does not fit the values is not used. [any]

#pragma once

#include "host/base/Translation.h"

#include <fmt/format.h>

#include <string>

namespace host {

/// Formats the translation of a text, or else the text itself.
[[nodiscard]] std::string formatEither(const char* translation, const char* text,
                                       fmt::format_args arguments);

/// A text in the user's language, with values. Precondition: it is a literal.
template <typename... Arguments>
[[nodiscard]] std::string trFormat(fmt::format_string<Arguments...> text, Arguments&&... arguments)
{
    const auto* const literal = fmt::string_view{text}.data();
    return formatEither(tr(literal), literal, fmt::make_format_args(arguments...));
}

/// The text for a number of things, in the user's language, with values.
/// Precondition: both texts are literals.
template <typename... Arguments>
[[nodiscard]] std::string trCounted(unsigned long count, fmt::format_string<Arguments...> one,
                                    fmt::format_string<Arguments...> many, Arguments&&... arguments)
{
    const auto* const oneLiteral = fmt::string_view{one}.data();
    const auto* const manyLiteral = fmt::string_view{many}.data();
    return formatEither(tr(oneLiteral, manyLiteral, count), count == 1 ? oneLiteral : manyLiteral,
                        fmt::make_format_args(arguments...));
}

/// The same for a text of a table. Precondition: both texts fit the values.
template <typename... Arguments> [[nodiscard]] std::string
trCounted(unsigned long count, const CountedText& text, Arguments&&... arguments)
{
    return formatEither(tr(text, count), count == 1 ? text.one : text.many,
                        fmt::make_format_args(arguments...));
}

} // namespace host
