// SPDX-License-Identifier: MIT
// The window's translations, which come from gettext.

#pragma once

#include "host/base/Translation.h"

namespace host {

inline constexpr const char* kTranslationDomain = "magellangps-desktop";

/// Takes the language from the environment. Precondition: no other thread runs yet.
void openTranslations();

} // namespace host
