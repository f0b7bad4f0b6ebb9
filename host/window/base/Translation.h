// SPDX-License-Identifier: MIT
// Texts of the window in the user's language. The English text is the key; where there is no
// translation, it is shown itself. The template for translators is
// host/window/po/magellangps-desktop.pot, made by scripts/window-template. [any]

#pragma once

#include <glib.h>

namespace host {

inline constexpr const char* kTranslationDomain = "magellangps-desktop";

/// Takes the language from the environment. Precondition: no other thread runs yet.
void openTranslations();

/// Returns a text in the user's language.
[[nodiscard]] inline const char* tr(const char* text)
{
    return g_dgettext(kTranslationDomain, text);
}

/// Returns the text for a number of things.
[[nodiscard]] inline const char* tr(const char* one, const char* many, unsigned long count)
{
    return g_dngettext(kTranslationDomain, one, many, count);
}

} // namespace host
