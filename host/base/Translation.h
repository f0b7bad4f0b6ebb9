// SPDX-License-Identifier: MIT
// Texts for users, in their language if the front end has translations. The English text is the
// key, and is shown if it has no translation. The command line has none, because scripts read its
// texts; those of the window come from gettext. The template for translators is
// host/window/po/magellangps-desktop.pot, made by scripts/window-template. [any]

#pragma once

namespace host {

/// Returns the text in a language.
using TextOf = const char* (*)(const char* english);

[[nodiscard]] constexpr const char* englishText(const char* english)
{
    return english;
}

/// Where translations come from; English without them.
struct Translations {
    TextOf text = englishText;
    const char* (*counted)(const char* one, const char* many, unsigned long count) =
        [](const char* one, const char* many, unsigned long count) {
            return count == 1 ? one : many;
        };
};

/// A text for one thing and one for several.
struct CountedText {
    const char* one;
    const char* many;
};

/// Marks a text of a table for the template of the translation; it is translated when it is shown.
constexpr const char* marked(const char* text)
{
    return text;
}

constexpr CountedText marked(const char* one, const char* many)
{
    return {one, many};
}

/// Precondition: no other thread runs yet. Without a call all texts are English.
void setTranslations(const Translations& chosen) noexcept;

/// Returns a text in the user's language.
[[nodiscard]] const char* tr(const char* text);

/// Returns the text for a number of things.
[[nodiscard]] const char* tr(const char* one, const char* many, unsigned long count);
[[nodiscard]] const char* tr(const CountedText& text, unsigned long count);

} // namespace host
